#!/usr/bin/env python3
"""The checks of the dialect and of include lines find planted faults, and pass what is right."""
import unittest
from pathlib import Path

import check_dialect
import check_includes
from check_test import SmallProject

DASHES = "-" * 60


class DialectTest(unittest.TestCase):
    def rules_of(self, text, path="app/a.cpp"):
        return [(line, rule) for line, rule, _ in check_dialect.faults(Path(path), text)]

    def found(self, rule, *texts, path="app/a.cpp"):
        for text in texts:
            self.assertEqual([found for _, found in self.rules_of(text, path)], [rule], text)

    def passes(self, *texts, path="app/a.cpp"):
        for text in texts:
            self.assertEqual(self.rules_of(text, path), [], text)

    def test_headings(self):
        self.assertEqual(
            self.rules_of(f"// {DASHES}\n// torn\n// {DASHES}\nint a;\n"), [(1, "heading"), (3, "heading")]
        )
        self.found(
            "heading",
            f"    // ---- name {DASHES}",
            "// -- name",
            "// === name",
            f"// name {DASHES}",
            "// ------ name",
            "//" + "*" * 40,
            "//---- name",
            "// ----name ----",
        )
        self.passes("// ---- name", "    // ---- two words, more", "// a - b -- c", "int i; // -1 at the end")
        self.passes(f'const char* line = "// {DASHES}";')

    def test_templates(self):
        self.found(
            "typename",
            "template <class T>\nvoid f();",
            "template <typename A, class... B> void f();",
            "template <\n    typename A,\n    class B = std::vector<A>>\nclass C;",
            "template <template <typename> class T>\nvoid f();",
        )
        self.passes(
            "template <typename T>\nclass A\n{\n};",
            "template <>\nclass A<int>;",
            "template <enumclass T>",
            "// template <class T>",
            "template <int size>\nfriend class B;",
        )

    def test_constants(self):
        self.found(
            "constant",
            "constexpr int kSize = 3;",
            'const QString Name("a");',
            "static constexpr Row Rows[] = {",
            "    static const std::map<int, std::string> Names{",
            "inline constexpr int MAX_SIZE = 1;",
            "constexpr const char* Texts[2] = {}",
            "constexpr std::chrono::seconds Patience{3};",
        )
        self.passes(
            "constexpr int size = 3;",
            'const QLatin1String key("A");',
            "#define LIMIT 3",
            "enum { Small = 1 };",
            "constexpr OpcUa_StatusCode OpcUa_Good = 0;",
            "const QStaticPlugin qt_static_plugin_Row();",
            "    const UaString& m_name = {};",
            "constexpr bool operator==(A a)",
            "constexpr explicit UaDateTime(int ticks)",
            "const Row* Name;",
            "UaStatus Known::Name(int a)",
            "thread_local const Queue* t_queue = nullptr;",
        )
        self.found("constant", "constexpr int Error = 1;", path="app/api/qlumother.h")
        self.passes("inline constexpr int Error = 1;", path="app/api/qlumapplicationinterface.h")

    def test_names_of_tests(self):
        self.found(
            "test name", "TEST(Channel, renews)\n{", "TEST_F(Channel, Renews_Late)", "TYPED_TEST(Row, ROWS)"
        )
        self.passes(
            "TEST(Channel, RenewsLate)", "TEST_F(Channel, DISABLED_RenewsLate)", "// TEST(Channel, renews)"
        )

    def test_slashes(self):
        self.found(
            "slashes",
            "/// A contract.\nint f();",
            "int f(); ///< in bytes",
            "/* old */ int a;",
            "/** doc\n */\nint a;",
        )
        self.found("slashes", "/* a comment */\n", path="app/a.h")
        self.passes(
            "// why\nint f();",
            "void f(int /*unused*/)",
            "f(/*count=*/3);",
            'auto url = "opc.tcp:///path /* */";',
        )
        self.passes("/// A contract.\nint f();\n", path="app/a.h")
        self.passes("/* C only */\n", path="app/a.c")

    def test_contracts(self):
        head = "// What the file is for.\n#pragma once\n\n"
        for declaration in (
            "int size();",
            "class Row",
            "template <typename T>",
            "int limit = 3;",
            "[[nodiscard]] int a();",
        ):
            self.found("contract", f"{head}// Says something.\n// And more.\n{declaration}\n", path="app/a.h")
            self.passes(f"{head}/// Says something.\n{declaration}\n", path="app/a.h")
            self.passes(f"{head}// Says something.\n{declaration}\n")
        self.found("contract", f"{head}class A\n{{\n    // In bytes.\n    int size();\n}};\n", path="app/a.h")
        self.passes(
            f"{head}inline int f()\n{{\n    // surprising\n    return 1;\n}}\n",
            f"{head}// ---- rows\nint rows();\n",
            f"{head}// of several declarations\n\nint rows();\n",
            f"{head}// of a table\nUA_ROW(Argument)\nUA_ROW(Value)\n",
            f"{head}// clang-format off\n#define A 1\n",
            path="app/a.h",
        )

    def test_locks(self):
        self.found("lock", "void A::endLocked(int x)\n{\n    m_x = x;\n}\n")
        self.found("lock", "class A\n{\n    bool isLocked() const { return m_x; }\n};\n", path="app/a.h")
        self.passes(
            "void A::endLocked(int x)\n{\n    assertLocked(m_mutex);\n    m_x = x;\n}\n",
            "void A::endLocked()\n{\n    m_mutex.assertLocked();\n}\n",
            "bool isLocked() { return other.isLocked(); } // which asserts",
            "void endLocked(State& s, const Guard&)\n{\n    s.x = 1;\n}\n",
        )

    def test_words(self):
        apart, hyphen = "can" + " not", "call" + "-back"
        for path in ("app/a.cpp", "docs/a.md", "tools/a.sh", "app/help/a.html"):
            self.found("word", f"// it {apart} be", f"a {hyphen} runs", f"{hyphen.capitalize()}s", path=path)
        self.found(
            "word", f"// it can\n// {'not'} be", f"TEST(A, What{'Can'}{'NotBe'})", f"it {'Can'} {'not'}"
        )
        self.passes(
            "// it cannot be, a callback, can nothing, cannotBe", f"it {apart} only read", "fallback-"
        )
        self.passes(f'"Error: UaSession::disconnect - connection error - {apart} call it"')


class ProjectTest(SmallProject):
    def test_generated_files_and_other_checkouts_data_are_left_out(self):
        text = "/* generated */\ntemplate <class T>\nvoid f();\n"
        for path in ("stack/generated/a.h", "tests/data/a.txt", "app/a.h"):
            self.write(path, text)
        found = [(str(path), rule) for path, _, rule, _ in check_dialect.check(self.root)]
        self.assertEqual(found, [("app/a.h", "slashes"), ("app/a.h", "typename")])


class IncludesTest(SmallProject):
    def setUp(self):
        super().setUp()
        self.write("uabase/values/uanodeid.h", "#pragma once\n\n#include <string>\n\nclass UaNodeId\n{\n};\n")
        self.write("app/api/qlumlog.h", "#pragma once\n\nclass QlumLog\n{\n};\n")
        self.write("stack/include/opcua/opcua.h", "#ifndef OPCUA_H\n#define OPCUA_H\n#endif\n")
        check_includes.project_headers.cache_clear()

    def faults_of(self, text, path="app/api/qlumlog.cpp"):
        self.write(path, text)
        return [
            fault.split(": ")[1]
            for fault in check_includes.check(self.root.resolve())
            if fault.startswith(path)
        ]

    def repaired(self, text, path="app/api/qlumlog.cpp"):
        self.write(path, text)
        return check_includes.repaired(self.root.resolve(), Path(path), text)

    def test_what_is_in_order_passes_and_stays(self):
        text = (
            "#include <app/api/qlumlog.h>\n\n"
            "#include <opcua/opcua.h>\n#include <uabase/values/uanodeid.h>\n\n"
            "#include <QString>\n#include <openssl/evp.h>\n\n#include <memory>\n#include <sys/stat.h>\n\n"
            "QString f(UaNodeId, std::unique_ptr<int>);\n"
        )
        self.assertEqual(self.faults_of(text), [])
        self.assertEqual(self.repaired(text), text)

    def test_planted_disorder_is_found_and_mended(self):
        own, other, library, standard = (
            "#include <app/api/qlumlog.h>",
            "#include <uabase/values/uanodeid.h>",
            "#include <QString>",
            "#include <cstdio>",
        )
        right = f"{own}\n\n{other}\n\n{library}\n\n{standard}\n\nint i;\n"
        for lines in (
            (other, "", own, "", library, "", standard),
            (own, "", library, "", other, "", standard),
            (own, "", other, library, "", standard),
            ('#include "qlumlog.h"', "", other, "", library, "", standard),
            (own, "", other, "", library, "", "", standard),
            (own, "", '#include "uabase/values/uanodeid.h"', "", library, "", standard),
            (own, "", other, "", library, "", standard, standard),
        ):
            text = "\n".join(lines) + "\n\nint i;\n"
            self.assertEqual(self.faults_of(text), ["include lines are not in order"], text)
            self.assertEqual(self.repaired(text), right, text)

    def test_names_ascend_within_a_group(self):
        text = "#include <vector>\n#include <array>\n\nstd::vector<std::array<int, 2>> a;\n"
        self.assertEqual(self.faults_of(text, "bench/a.cpp"), ["include lines are not in order"])

    def test_missing_headers_are_found_and_written(self):
        for use, header in (
            ("std::vector<int> a;", "<vector>"),
            ("std::optional<int> a;", "<optional>"),
            ("UaNodeId a;", "<uabase/values/uanodeid.h>"),
            ("QString a;", "<QString>"),
        ):
            text = f"#include <app/api/qlumlog.h>\n\n{use}\n"
            found = self.faults_of(text)
            self.assertEqual(len(found), 1, use)
            self.assertTrue(found[0].endswith(f"does not include {header}"), found)
            self.assertIn(f"#include {header}\n", self.repaired(text))

    def test_what_the_own_header_includes_serves_its_source(self):
        self.write(
            "app/api/qlumlog.h",
            "#pragma once\n\n#include <vector>\n\nclass QlumLog\n{\n    std::vector<int> m_rows;\n};\n",
        )
        self.assertEqual(self.faults_of("#include <app/api/qlumlog.h>\n\nstd::vector<int> rows();\n"), [])

    def test_declarations_in_advance_and_comments_need_no_header(self):
        text = (
            "#pragma once\n\nclass UaNodeId;\nclass QString;\n"
            "// a std::vector\nvoid f(const UaNodeId&, const QString&);\n"
        )
        self.assertEqual(self.faults_of(text, "app/api/qlumother.h"), [])


if __name__ == "__main__":
    unittest.main()
