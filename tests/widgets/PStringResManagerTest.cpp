#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/TestApplication.h"
#include "widgets/TestResources.h"

#include <string>

namespace {

std::string text(PString const &string)
{
    return std::string(static_cast<char const *>(string));
}

void translateCaptions(TestApplication &app)
{
    app.translateKey(GSFatalCaption, IDS_FATAL_CAPTION);
    app.translateKey(GSWarningCaption, IDS_WARNING_CAPTION);
}

} // namespace

TEST(PStringResManager, ReadsPlainIds)
{
    PStringResManager manager;
    EXPECT_EQ("Hello from the string table", text(manager.get(IDS_GREETING)));
    EXPECT_EQ("String Resource Error! (42)", text(manager.get(42)));

    PStringResManager none(static_cast<HINSTANCE>(nullptr));
    EXPECT_EQ("String Resource Error, No handle available.", text(none.get(IDS_GREETING)));

    TestApplication app;
    app.resourceModule = GetModuleHandleA("user32.dll");
    PStringResManager copy(&app);
    EXPECT_EQ("String Resource Error! (100)", text(copy.get(IDS_GREETING)));
    copy = manager;
    EXPECT_EQ("Test fatal", text(copy.get(IDS_FATAL_CAPTION)));
    PStringResManager fromNone(static_cast<IConsoleApp *>(nullptr));
    EXPECT_EQ("Hello from the string table", text(fromNone.get(IDS_GREETING)));
}

TEST(PStringResManager, GenericKeysNeedAConsoleApplication)
{
    PStringResManager manager;
    // A valid module, but no application to translate the key.
    EXPECT_EQ(nullptr, getConsoleApp());
    EXPECT_EQ("String Resource Error, No handle available.", text(manager.get(GSFatalCaption)));

    {
        TestApplication untranslated;
        EXPECT_EQ("String Resource Error! (1)", text(manager.get(GSWarningCaption)));
    }
    TestApplication app;
    translateCaptions(app);
    EXPECT_EQ("Test fatal", text(manager.get(GSFatalCaption)));
    EXPECT_EQ("Test warning", text(manager.get(GSWarningCaption)));
    // An untranslated key is named in the error, not the id.
    EXPECT_EQ("String Resource Error! (7)", text(manager.get(static_cast<GenericStringId>(7))));
}

TEST(PStringResManager, FormatsMessages)
{
    PStringResManager manager;
    PList<PString> arguments;
    arguments.add(PString("salt"));
    arguments.add(PString("pepper"));
    EXPECT_EQ("salt and pepper", text(manager.getFormatMsg(IDS_TWO_ARGUMENTS, arguments)));

    PList<PString> one;
    one.add(PString("salt"));
    // A placeholder past the arguments meets the null that ends them, not a stray pointer.
    EXPECT_EQ(0u, text(manager.getFormatMsg(IDS_TWO_ARGUMENTS, one)).find("salt and "));

    PList<PString> none;
    EXPECT_EQ("Hello from the string table", text(manager.getFormatMsg(IDS_GREETING, none)));
    // An error text is formatted like any message.
    EXPECT_EQ("String Resource Error! (42)", text(manager.getFormatMsg(42, none)));

    TestApplication app;
    translateCaptions(app);
    EXPECT_EQ("Test warning", text(manager.getFormatMsg(GSWarningCaption, none)));
}

TEST(PStringResManager, FailedFormatGivesBlankResult)
{
    PStringResManager manager;
    PList<PString> arguments;
    arguments.add(PString(std::string(5000, 'x').c_str()));
    arguments.add(PString("y"));
    PString result = manager.getFormatMsg(IDS_TWO_ARGUMENTS, arguments);
    EXPECT_EQ(std::string::npos, text(result).find("Error"));
    EXPECT_EQ(std::string::npos, text(result).find(" and y"));
    EXPECT_LE(result.length(), 4096);
}

TEST(PStringResManager, ProcessWideManagerFollowsTheApplication)
{
    HINSTANCE program = GetModuleHandleA(nullptr);
    PStringResManager *shared = getStringResManager();
    ASSERT_NE(nullptr, shared);
    EXPECT_EQ("Hello from the string table", text(shared->get(IDS_GREETING)));

    TestApplication app;
    app.resourceModule = GetModuleHandleA("user32.dll");
    EXPECT_EQ(shared, getStringResManager());
    EXPECT_EQ("String Resource Error! (100)", text(shared->get(IDS_GREETING)));

    // -1 and null leave the manager as it was.
    app.resourceModule = program;
    setStringResManager(&app);
    EXPECT_EQ("Hello from the string table", text(shared->get(IDS_GREETING)));
    app.resourceModule = reinterpret_cast<HINSTANCE>(-1);
    getStringResManager();
    setStringResManager(&app);
    EXPECT_EQ("Hello from the string table", text(shared->get(IDS_GREETING)));
    setStringResManager(nullptr);
    EXPECT_EQ("Hello from the string table", text(shared->get(IDS_GREETING)));
}

TEST(PMultiString, SingleByteText)
{
    PMultiString plain("abc");
    EXPECT_EQ(3, plain.length());
    EXPECT_EQ(static_cast<unsigned int>('b'), plain[1]);
    EXPECT_EQ(0u, plain[3]);
    EXPECT_EQ(0u, plain[-1]);
    EXPECT_EQ(0u, PMultiString()[0]);

    PMultiString copy(plain);
    copy.setPString(PString("xy"));
    EXPECT_EQ(2, copy.length());
    EXPECT_TRUE(copy.getPString() == "xy");
    copy = plain;
    EXPECT_TRUE(copy.getPString() == "abc");
}

// Run with a double-byte ANSI code page (932); elsewhere no byte is a lead byte.
TEST(PMultiString, DoubleByteText)
{
    if (!IsDBCSLeadByte(0x82))
        GTEST_SKIP() << "code page " << GetACP() << " has no lead byte 0x82";
    // Two double-byte characters and one single-byte character: 5 bytes.
    PMultiString text("\x82\xA0\x82\xA2z");
    EXPECT_EQ(5, text.PString::length());
    EXPECT_EQ(3, text.length());
    EXPECT_EQ(0x82A0u, text[0]);
    EXPECT_EQ(0x82A2u, text[1]);
    EXPECT_EQ(static_cast<unsigned int>('z'), text[2]);
    EXPECT_EQ(0u, text[3]);
    // A lead byte at the end counts as one character.
    PMultiString cut("a\x82");
    EXPECT_EQ(2, cut.length());
}
