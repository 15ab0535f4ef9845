// Texts and bytes of any size, edited a page at a time.
#include <tests/support/modeltext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumbytespage.h>
#include <uawidgets/editors/qlumpagedbytes.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QApplication>
#include <QByteArray>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QString>
#include <QTest>
#include <QTextCursor>
#include <QToolButton>
#include <gtest/gtest.h>

#include <random>
#include <span>
#include <string>
#include <utility>

namespace {
using Form = QlumPagedBytes::Form;

class PagedBytes : public ::testing::Test
{
protected:
    QPlainTextEdit* field() { return paged.findChild<QPlainTextEdit*>("text"); }
    void turn(const char* button) { paged.findChild<QToolButton*>(button)->click(); }
    QString note() { return paged.findChild<QLabel*>("note")->text(); }
    QByteArray bytes()
    {
        QByteArray now("not read");
        EXPECT_TRUE(paged.bytes(now));
        return now;
    }
    void goTo(int offset)
    {
        auto* line = paged.findChild<QLineEdit*>("goTo");
        line->setText(QString::number(offset));
        QTest::keyClick(line, Qt::Key_Return);
    }

    QlumPagedBytes paged;
};

QByteArray randomBytes(int size)
{
    std::minstd_rand random(7);
    QByteArray bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

// Every page is left as if it had been edited: a space comes and goes.
TEST_F(PagedBytes, PagesThatAreTouchedKeepEveryByteInEveryForm)
{
    const QByteArray binary = randomBytes(20000);
    QByteArray text;
    while (text.size() < 60000)
        text += QString::fromUtf8("Zeile \xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80 \xC2\xA0nbsp\n")
                    .repeated(5)
                    .toUtf8() +
                "one line" + QByteArray(3000, 'x');
    for (const auto& [form, content] :
         {std::pair{Form::Hexadecimal, binary}, {Form::Base64, binary}, {Form::Text, text}}) {
        paged.setBytes(content);
        ASSERT_TRUE(paged.setForm(form));
        QString last;
        int pages = 0;
        const auto* where = paged.findChild<QLabel*>("where");
        while (where->text() != last && pages < 1000) {
            last = where->text();
            field()->insertPlainText("00");
            field()->textCursor().deletePreviousChar();
            field()->textCursor().deletePreviousChar();
            EXPECT_EQ(paged.fault(), "");
            turn("nextPage");
            ++pages;
        }
        EXPECT_GT(pages, 4);
        EXPECT_EQ(bytes(), content) << "form " << static_cast<int>(form);
        turn("firstPage");
        turn("lastPage");
        turn("previousPage");
        EXPECT_EQ(bytes(), content);
    }
}

TEST_F(PagedBytes, WhatIsEnteredGoesWhereItWasEntered)
{
    QByteArray content = randomBytes(1 << 20);
    paged.setForm(Form::Hexadecimal);
    paged.setBytes(content);
    goTo(0x8001);
    field()->moveCursor(QTextCursor::Start);
    QTest::keyClicks(field(), "CA:FE ");
    turn("nextPage");
    content.insert(0x8000, "\xCA\xFE");
    EXPECT_EQ(paged.size(), content.size());
    EXPECT_EQ(bytes(), content);
    QTest::keyClick(field(), Qt::Key_A);
    EXPECT_NE(paged.fault(), "");
    const QString before = field()->toPlainText();
    turn("lastPage");
    EXPECT_EQ(field()->toPlainText(), before) << "a page at fault is not left";
    EXPECT_EQ(note(), paged.fault());
    QTest::keyClick(field(), Qt::Key_Backspace);
    QApplication::clipboard()->setText(QString("0a0b\n0c").repeated(2000));
    goTo(0);
    field()->paste();
    content.prepend(QByteArray("\x0a\x0b\x0c").repeated(2000));
    EXPECT_EQ(bytes(), content);
    QApplication::clipboard()->setText(QString("no hex ").repeated(2000));
    field()->paste();
    EXPECT_NE(note(), "");
    EXPECT_EQ(bytes(), content);
}

TEST_F(PagedBytes, TextThatAFieldWouldChangeIsOnlyShown)
{
    for (const char* text : {"a\r\nb\nc", "a\rb", "\xFF\xFE",
                             "\xEF\xBB\xBF"
                             "bom",
                             "\xE2\x80\xA9"}) {
        paged.setBytes(text);
        EXPECT_TRUE(field()->isReadOnly()) << text;
        EXPECT_EQ(bytes(), text);
    }
    paged.setBytes("a\r\nb\r\n");
    EXPECT_FALSE(field()->isReadOnly());
    field()->moveCursor(QTextCursor::End);
    QTest::keyClicks(field(), "c");
    EXPECT_EQ(bytes(), "a\r\nb\r\nc") << "its lines end as before";
}

TEST(BytesPage, TellsNullFromEmptyAndChecksTheLengthOfTheWhole)
{
    QlumValueContext context;
    context.builtInType = OpcUaType_String;
    context.maxStringLength = 100000;
    QlumBytesPage page(context, OpcUaType_String);
    page.setValue(UaVariant(UaString()));
    UaVariant value;
    ASSERT_TRUE(page.value(value));
    EXPECT_TRUE(value.isEmpty());
    auto* null = page.findChild<QCheckBox*>("null");
    ASSERT_TRUE(null->isChecked());
    null->click();
    ASSERT_TRUE(page.value(value));
    EXPECT_EQ(value, UaVariant(""));
    EXPECT_TRUE(page.isModified());
    page.setValue(UaVariant());
    EXPECT_FALSE(page.value(value)) << "one that is still to be given";
    QTest::keyClicks(page.findChild<QPlainTextEdit*>("text"), "z");
    ASSERT_TRUE(page.value(value));
    EXPECT_EQ(value, UaVariant("z"));
    const std::string text(100000, 'x');
    page.setValue(UaVariant(UaString(text.c_str())));
    EXPECT_FALSE(page.isModified());
    EXPECT_EQ(page.remark(), "");
    QTest::keyClicks(page.findChild<QPlainTextEdit*>("text"), "y");
    EXPECT_TRUE(page.refusal().contains("100,001")) << page.refusal();
    ASSERT_TRUE(page.value(value));
    EXPECT_EQ(value, UaVariant(UaString(('y' + text).c_str())));
}
} // namespace
