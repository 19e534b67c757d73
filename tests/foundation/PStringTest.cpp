#include <gtest/gtest.h>

#include "TeskWin.h"

#include <climits>
#include <cstring>

namespace {

TEST(PString, ConstructsFromTextCopiesAndNull)
{
    PString empty;
    EXPECT_EQ(empty.length(), 0);
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_STREQ(static_cast<char const *>(empty), "");

    PString fromNull(static_cast<char const *>(nullptr));
    EXPECT_TRUE(fromNull.isEmpty());

    PString text("hello");
    EXPECT_EQ(text.length(), 5);
    EXPECT_FALSE(text.isEmpty());
    PString copy(text);
    static_cast<char *>(copy)[0] = 'j';
    EXPECT_STREQ(static_cast<char const *>(text), "hello");
    EXPECT_STREQ(static_cast<char const *>(copy), "jello");

    // Longer than the inline buffer.
    const char *longText = "a text well beyond sixteen characters";
    PString longer(longText);
    PString longCopy(longer);
    EXPECT_EQ(longCopy.length(), static_cast<int>(std::strlen(longText)));
    EXPECT_STREQ(static_cast<char const *>(longCopy), longText);
    EXPECT_NE(static_cast<char const *>(longCopy), static_cast<char const *>(longer));
}

TEST(PString, RepeatedCharacterServesAsWritableBuffer)
{
    PString three(3, 'x');
    EXPECT_STREQ(static_cast<char const *>(three), "xxx");
    EXPECT_TRUE(PString(0, ' ').isEmpty());
    EXPECT_TRUE(PString(-4, ' ').isEmpty());

    // A writer fills part of the buffer; resize takes the length from the zero byte.
    PString buffer(64, 0x20);
    ASSERT_EQ(buffer.length(), 64);
    std::strcpy(static_cast<char *>(buffer), "written");
    EXPECT_EQ(buffer.length(), 64);
    buffer.resize();
    EXPECT_EQ(buffer.length(), 7);
    EXPECT_TRUE(buffer == "written");

    // Every offered byte may be written, the last zero byte included.
    PString full(40, 0x20);
    std::memset(static_cast<char *>(full), 'z', 41);
    full.resize();
    EXPECT_EQ(full.length(), 40);
    EXPECT_EQ(static_cast<char const *>(full)[40], 0);

    // No memory for the buffer: an empty string, not a crash.
    PString huge(INT_MAX, ' ');
    EXPECT_TRUE(huge.isEmpty());
    EXPECT_STREQ(static_cast<char const *>(huge), "");
}

TEST(PString, SetAndAssignReplaceTheText)
{
    PString s("short");
    s.set("a replacement long enough for the heap");
    EXPECT_TRUE(s == "a replacement long enough for the heap");
    s.set("tiny");
    EXPECT_EQ(s.length(), 4);
    EXPECT_TRUE(s == "tiny");
    s.set(nullptr);
    EXPECT_TRUE(s.isEmpty());

    // A tail of the string's own text.
    s.set("0123456789abcdefghij");
    s.set(static_cast<char const *>(s) + 10);
    EXPECT_TRUE(s == "abcdefghij");

    PString other("other text that is also long");
    s = other;
    EXPECT_TRUE(s == other);
    PString &self = s;
    s = self;
    EXPECT_TRUE(s == "other text that is also long");
    s = "converted";
    EXPECT_TRUE(s == "converted");
}

TEST(PString, ComparesTextNotPointers)
{
    PString abc("abc");
    EXPECT_TRUE(abc == "abc");
    EXPECT_FALSE(abc == "abcd");
    EXPECT_FALSE(abc == "ab");
    EXPECT_FALSE(abc == "abd");
    EXPECT_TRUE(abc != "abd");
    EXPECT_TRUE(abc == PString("abc"));
    EXPECT_FALSE(abc == PString("ABC"));
    EXPECT_TRUE(abc != PString("ab"));
    EXPECT_TRUE("abc" == abc);
    EXPECT_TRUE("xyz" != abc);

    PString empty;
    EXPECT_TRUE(empty == static_cast<char const *>(nullptr));
    EXPECT_TRUE(empty == "");
    EXPECT_FALSE(abc == static_cast<char const *>(nullptr));
}

TEST(PString, ConcatenatesIntoANewString)
{
    PString base("file");
    PString joined = base + ".bak";
    EXPECT_TRUE(joined == "file.bak");
    EXPECT_TRUE(base == "file");
    EXPECT_TRUE(base + nullptr == "file");
    EXPECT_TRUE(PString() + "" == "");

    PString longJoin = PString("C:\\a rather long folder name\\") + "and a long file name.txt";
    EXPECT_EQ(longJoin.length(), 53);
    EXPECT_TRUE(longJoin == "C:\\a rather long folder name\\and a long file name.txt");
    // A string joined with a tail of itself.
    PString twice = longJoin + (static_cast<char const *>(longJoin) + 29);
    EXPECT_TRUE(twice == "C:\\a rather long folder name\\and a long file name.txtand a long file name.txt");
}

TEST(PString, IndexesAndUpperCases)
{
    PString s("mixed Case-09 {z}\xE9");
    EXPECT_EQ(s[0], 'm');
    EXPECT_EQ(s[6], 'C');
    EXPECT_EQ(s[-1], 0);
    EXPECT_EQ(s[s.length()], 0);
    EXPECT_EQ(s[INT_MAX], 0);
    s.toUpper();
    EXPECT_TRUE(s == "MIXED CASE-09 {Z}\xE9");
    PString empty;
    empty.toUpper();
    EXPECT_TRUE(empty.isEmpty());
}

TEST(PGenericString, HandsOutAPrivateModifiableCopy)
{
    PString path("C:\\data\\picture.tif");
    PGenericString generic(path);
    char *buffer = generic;
    EXPECT_STREQ(buffer, "C:\\data\\picture.tif");
    buffer[0] = 'D';
    EXPECT_STREQ(static_cast<char *>(generic), "D:\\data\\picture.tif");
    EXPECT_TRUE(path == "C:\\data\\picture.tif");
}

} // namespace
