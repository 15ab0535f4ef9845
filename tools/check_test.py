#!/usr/bin/env python3
"""The checks find what they are for, and pass what is right: each on a small project with planted faults."""
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

import check_layers
import check_map
import check_sizes
import check_wording
from check_sources import ROOT, without_comments
from script_functions import javascript_functions, python_functions, shell_functions


class SmallProject(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        subprocess.run(["git", "init", "-q", folder.name], check=True)

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")


class LayersTest(SmallProject):
    def setUp(self):
        super().setUp()
        self.write(
            "cmake/TavelinParts.cmake", (ROOT / "cmake/TavelinParts.cmake").read_text(encoding="utf-8")
        )
        for header in (
            "stack/include/opcua/opcua.h",
            "stack/generated/include/opcua/opcua_types.h",
            "stack/generated/opcua_types.h",
            "stack/core/channel.h",
            "stack/transport/loop.h",
            "uabase/uanodeid.h",
            "uabase/uatrace_p.h",
            "uabase/uapkicpp/uapkicertificate.h",
            "uaclientsdk/uasession.h",
            "app/api/qlumlog.h",
            "uawidgets/qlumplot.h",
            "certificates/qlumcertificates.h",
            "servers/qlumserver.h",
            "plugins/events/qlumeventview.h",
            "app/mainwindow/qlumtavelin.h",
        ):
            self.write(header, "#pragma once\n")

    def faults_of(self, path, *includes):
        self.write(path, "".join(f"#include {name}\n" for name in includes))
        return [problem for problem in check_layers.check(self.root) if problem.startswith(f"{path}:")]

    def test_arrows_down_pass(self):
        for path, *includes in (
            ("stack/core/channel.cpp", "<stack/core/channel.h>", "<opcua/opcua.h>", "<vector>"),
            ("stack/transport/loop.cpp", "<stack/core/channel.h>", "<sys/socket.h>", "<openssl/ssl.h>"),
            (
                "uabase/uanodeid.cpp",
                "<uabase/uanodeid.h>",
                "<opcua/opcua_types.h>",
                "<libxml/tree.h>",
                '"uatrace_p.h"',
            ),
            ("uabase/uapkicpp/uapkicertificate.cpp", "<openssl/x509.h>", "<uabase/uanodeid.h>"),
            (
                "plugins/events/a.cpp",
                "<uabase/uanodeid.h>",
                "<uaclientsdk/uasession.h>",
                "<QWidget>",
                "<qwt_plot.h>",
            ),
            ("plugins/addressspace/a.cpp", "<servers/qlumserver.h>"),
            ("plugins/gds/a.cpp", "<certificates/qlumcertificates.h>"),
            ("app/mainwindow/qlumtavelin.cpp", "<plugins/events/qlumeventview.h>", "<servers/qlumserver.h>"),
            ("app/api/qlumlog.cpp", "// <plugins/events/qlumeventview.h>"),
        ):
            self.assertEqual(self.faults_of(path, *includes), [], path)

    def test_wrong_arrows_are_found(self):
        for path, include in (
            ("uabase/uanodeid.cpp", "<uaclientsdk/uasession.h>"),
            ("uabase/uanodeid.cpp", "<uabase/uapkicpp/uapkicertificate.h>"),
            ("uabase/uanodeid.cpp", "<stack/core/channel.h>"),
            ("uabase/uanodeid.cpp", "<stack/generated/opcua_types.h>"),
            ("uaclientsdk/uasession.cpp", "<app/api/qlumlog.h>"),
            ("uaclientsdk/uasession.cpp", "<uabase/uatrace_p.h>"),
            ("stack/core/channel.cpp", "<stack/transport/loop.h>"),
            ("stack/core/channel.cpp", "<uabase/uanodeid.h>"),
            ("app/api/qlumlog.cpp", "<uawidgets/qlumplot.h>"),
            ("servers/qlumserver.cpp", "<plugins/events/qlumeventview.h>"),
            ("plugins/attributes/a.cpp", "<plugins/events/qlumeventview.h>"),
            ("plugins/attributes/a.cpp", "<servers/qlumserver.h>"),
            ("plugins/attributes/a.cpp", "<certificates/qlumcertificates.h>"),
            ("plugins/attributes/a.cpp", '"../../app/mainwindow/qlumtavelin.h"'),
            ("uawidgets/qlumplot.cpp", "<app/mainwindow/qlumtavelin.h>"),
        ):
            self.assertEqual(len(self.faults_of(path, include)), 1, f"{path} {include}")
            (self.root / path).unlink()

    def test_outside_libraries_are_kept_in_their_folders(self):
        for path, include in (
            ("uaclientsdk/uasession.cpp", "<QString>"),
            ("uabase/uanodeid.h", "<QtCore/QString>"),
            ("app/api/qlumlog.cpp", "<openssl/evp.h>"),
            ("stack/core/channel.cpp", "<openssl/evp.h>"),
            ("uabase/uanodeid.cpp", "<openssl/evp.h>"),
            ("uaclientsdk/uasession.cpp", "<sys/socket.h>"),
            ("stack/core/channel.cpp", "<netinet/tcp.h>"),
            ("servers/qlumserver.cpp", "<sys/socket.h>"),
            ("app/mainwindow/qlumtavelin.cpp", "<QTcpSocket>"),
            ("uaclientsdk/uasession.cpp", "<libxml/tree.h>"),
        ):
            self.assertEqual(len(self.faults_of(path, include)), 1, f"{path} {include}")
            (self.root / path).unlink()

    def test_a_folder_without_a_part_is_found(self):
        self.assertEqual(len(self.faults_of("stack/extras/more.cpp")), 1)

    def test_every_part_of_the_table_has_a_layer(self):
        layers = check_layers.Layers((ROOT / "cmake/TavelinParts.cmake").read_text(encoding="utf-8"))
        for part in {*check_layers.PARTS.values(), *layers.allow, "tavelin"}:
            self.assertIsInstance(layers.layer_of(part), int, part)


class SizesTest(SmallProject):
    def test_long_files_and_functions_are_found_and_generated_ones_are_not(self):
        self.write("a.cpp", "int i;\n" * 601)
        self.write("b.cpp", "int f()\n{\n" + "    g();\n" * 78 + "}\n")
        self.write("fits.cpp", "int i;\n" * 600)
        self.write("fits2.cpp", "int f()\n{\n" + "    g();\n" * 77 + "}\n")
        self.write("stack/generated/c.cpp", "int i;\n" * 5000)
        problems, lengths = check_sizes.check(self.root)
        self.assertEqual([problem.split(":")[0] for problem in problems], ["a.cpp", "b.cpp"])
        self.assertEqual(lengths["C++"], [80, 81])

    def test_scripts_are_measured_too(self):
        for path, line, head, tail in (
            ("a.py", "g()\n", "def f():\n", "\n\ng()\n"),
            ("a.mjs", "g();\n", "export function f() {\n", "}\n\ng();\n"),
            ("a.sh", "g\n", "f() {\n", "}\n\ng\n"),
        ):
            end = tail.count("}")  # the closing bracket is a line of the function
            self.write(f"long/{path}", line * 601)
            self.write(f"fits/{path}", line * 600)
            self.write(f"long/function/{path}", head + f"    {line}" * (80 - end) + tail)
            self.write(f"fits/function/{path}", head + f"    {line}" * (79 - end) + tail)
        problems, lengths = check_sizes.check(self.root)
        self.assertEqual(
            [problem.split(":")[0] for problem in problems],
            [f"long/{folder}a.{suffix}" for suffix in ("py", "mjs", "sh") for folder in ("", "function/")],
        )
        self.assertEqual(lengths, {"C++": [], **dict.fromkeys(("Python", "JavaScript", "shell"), [80, 81])})

    def test_functions_are_told_from_other_braces(self):
        source = """
namespace ns {
/* { */ const char* text = "{ ( {"; // {
static const Row table[] = {
    {1, "a"},
};
template <class T = std::vector<int>>
class Thing : public Base
{
    Q_OBJECT
public:
    Thing(int a)
        : m_a{a}, m_b(1)
    {
        if (a) {
        }
    }
    bool operator==(const Thing& other) const { return true; }
    int m_a{};
};
template <class T = int>
T made(T value) noexcept
{
    auto inner = [] { return 1; };
    return value;
}
const auto late = [](int x) {
    return x;
};
struct Pair pairOf(char c)
{
    return {'{', c};
}
enum class Kind { A, B };
} // namespace ns
TEST(Subject, does)
{
}
"""
        found = {name: lines for name, _, lines in check_sizes.functions(source)}
        self.assertEqual(found, {"Thing": 6, "operator==": 1, "made": 6, "?": 3, "pairOf": 4, "TEST": 3})


class ScriptFunctionsTest(unittest.TestCase):
    def found(self, find_functions, source):
        return {name: lines for name, _, lines in find_functions(source)}

    def test_python(self):
        source = """
@decorated
def outer(
    a,
):
    text = '''
def none():
'''

    def inner(): return 1

    return inner


class Thing:
    async def method(self):
        pass
"""
        self.assertEqual(self.found(python_functions, source), {"outer": 10, "inner": 1, "method": 2})

    def test_shell(self):
        source = """
short() { echo "$1"; }
named() { # FILE
    if true; then {
        echo
    }; fi
}
held() { [ "$1" ] && {
    echo
}; }
sub-shell() (
    cd /
)
case $x in
    "") named "$(pwd)" ;;
esac
"""
        self.assertEqual(
            self.found(shell_functions, source), {"short": 1, "named": 5, "held": 3, "sub-shell": 3}
        )

    def test_javascript(self):
        source = """
export default async function named({ a, b }) {
  if (a) {
    b();
  } else {
    c();
  }
}
function broken(
  first,
  { second },
) {
  call(
    first,
  );
}
function taken({
  a,
}) {
  return a;
}
const arrow = async (a) => {
  for (const b of a) {
    b();
  }
};
const expression = (a) => a + 1;
class Thing {
  get value() {
    return 1;
  }
  #hidden(
    a,
  ) {
    return {
      inObject() {
        return a;
      },
    };
  }
}
call(1, (a) => {
  b(a);
});
"""
        self.assertEqual(
            self.found(javascript_functions, source),
            {
                "named": 7,
                "broken": 8,
                "taken": 5,
                "arrow": 5,
                "value": 3,
                "#hidden": 9,
                "inObject": 3,
                "=>": 3,
            },
        )


class WordingTest(SmallProject):
    def faults_of(self, path, text):
        self.write(path, text)
        return check_wording.check(self.root)

    def test_planted_words_are_found(self):
        paper, mark = "sp" + "ec", "TO" + "DO"
        for text in (
            f"// as the {paper} says",
            f"see The {paper.capitalize()}ification",
            f"{paper}.md",
            "Pa" + "rt 4.1",
            "/wo" + "rk/main",
            "sha" + "red/style",
            f"// {mark}: later",
            "// not imple" + "mented yet",
        ):
            self.assertEqual(len(self.faults_of("a.cpp", text + "\n")), 1, text)

    def test_what_is_right_passes(self):
        paper = "sp" + "ec"
        self.write("generated/status.cpp", "// Bad: the operation is not imple" + "mented.\n")
        self.assertEqual(
            self.faults_of(
                "a.cpp", f"// {paper}ial; follows the {paper}ification OPC 10000-6, 6.7; " "network/ part 4\n"
            ),
            [],
        )

    def test_messages_of_commits_are_read(self):
        git = ["git", "-C", str(self.root), "-c", "user.name=t", "-c", "user.email=t@example.org"]
        subprocess.run([*git, "commit", "-q", "--allow-empty", "-m", "first"], check=True)
        subprocess.run([*git, "commit", "-q", "--allow-empty", "-m", "as the sp" + "ec says"], check=True)
        self.assertEqual(len(check_wording.check_messages(self.root, "HEAD~1..HEAD")), 1)


class MapTest(SmallProject):
    def setUp(self):
        super().setUp()
        self.write("app/log/qlumlog.h", "")
        self.write("app/log/qlumlogview_p.h", "")
        self.write("README.md", "")

    def faults_of(self, path, text):
        self.write(path, text)
        problems = check_map.check(self.root)
        (self.root / path).unlink()
        return [problem.removeprefix(f"{path}:").split(": there is no ") for problem in problems]

    def test_dead_pointers_of_the_map_are_found(self):
        text = "`anything/else`\n| gone | `app/gone` | `QlumGone` of `qlumgone.h` | [here](../GONE.md) |\n"
        gone = ["../GONE.md", "app/gone", "QlumGone", "qlumgone.h"]
        self.assertEqual(self.faults_of("docs/map.md", text), [["2", target] for target in gone])

    def test_dead_links_of_any_document_are_found(self):
        text = "# Title\n\n[a](gone.md) and [b](../gone.md#part), `gone/too`\n"
        self.assertEqual(self.faults_of("docs/other.md", text), [["3", "gone.md"], ["3", "../gone.md"]])

    def test_what_is_there_passes(self):
        row = "| log | `app/log` | `QlumLog` of `qlumlog.h`, `QlumLogViewPrivate` | `tests/<part>` |\n"
        links = "[a](../README.md#title) [b](https://example.org/gone.md) [c](#part) ![d](../app/log)\n"
        self.assertEqual(self.faults_of("docs/map.md", row + links), [])


class CommentsTest(unittest.TestCase):
    def test_lines_stay_and_literals_are_blanked(self):
        source = 'a /* {\n{ */ b // {\n"x{" \'{\' R"q({\n)q" 1\'000 {'
        text = without_comments(source)
        self.assertEqual(text.count("\n"), source.count("\n"))
        self.assertEqual(len(re.findall("{", text)), 1)
        self.assertIn('"x{"', without_comments(source, keep_strings=True))


if __name__ == "__main__":
    unittest.main()
