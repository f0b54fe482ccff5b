// The reader of start-up files: words, numbers, lines and fields out of good and spoiled bytes.
#include "numbers/startup_read.h"
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <climits>
#include <string>
#include "numbers/compare.h"
#include "tests/support/data_files.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// A file of these bytes, opened.
struct opened_bytes {
    scratch_directory directory;
    data_file file;
    explicit opened_bytes(const std::string &bytes)
    {
        write_bytes(directory.path + "bytes", bytes);
        EXPECT_EQ(open_data_file(directory.path.c_str(), "bytes", &file), 1);
    }
    ~opened_bytes()
    {
        close_data_file(&file);
    }
};

// The word that stands in `text`, or the text "declined".
std::string word_in(const std::string &text, std::int32_t low, std::int32_t high)
{
    opened_bytes bytes(text);
    std::int32_t v = 99;
    if (read_word(&bytes.file, low, high, &v)) return std::to_string(v);
    EXPECT_EQ(v, 0);
    EXPECT_TRUE(bytes.file.damaged);
    return "declined";
}

std::string any_word_in(const std::string &text)
{
    return word_in(text, INT32_MIN, INT32_MAX);
}

// Read one number; its digits apart by blanks, or "declined".
std::string number_in(const std::string &text)
{
    opened_bytes bytes(text);
    record_audit audit;
    number n;
    n.size = 0;
    const bool read = read_number(&bytes.file, &n) != 0;
    EXPECT_TRUE(chain_is_normal(&n, digit_base));
    std::string digits;
    for (const numnode *node = n.head; node; node = node->next) digits += " " + std::to_string(node->digit);
    special_free(&n);
    audit.expect_unchanged("read_number");
    if (read) return digits;
    EXPECT_EQ(digits, " 0");
    return "declined";
}

}  // namespace

TEST(ReadWord, TakesBlanksSignsAndTheEndOfTheFile)
{
    EXPECT_EQ(any_word_in("17"), "17");
    EXPECT_EQ(any_word_in(" \t\r\n\v\f -17 "), "-17");
    EXPECT_EQ(any_word_in("0005\n"), "5");
    EXPECT_EQ(any_word_in("2147483647"), "2147483647");
    EXPECT_EQ(any_word_in("-2147483647"), "-2147483647");
}

TEST(ReadWord, TakesWordsOfAnyLengthBesideAnyByte)
{
    EXPECT_EQ(any_word_in("1234567"), "1234567");
    EXPECT_EQ(any_word_in("12345678"), "12345678");
    EXPECT_EQ(any_word_in("123456789 1"), "123456789");
    EXPECT_EQ(any_word_in("-1234567890"), "-1234567890");
    EXPECT_EQ(any_word_in("0000000000000000012 3"), "12");
    for (int length = 1; length <= 9; ++length) {
        const std::string digits = std::string("987654321").substr(0, static_cast<std::size_t>(length));
        for (int c = 0; c < 256; ++c) {
            if (c >= '0' && c <= '9') continue;
            const std::string behind = static_cast<char>(c) + std::string("5678\xff\xff");
            EXPECT_EQ(any_word_in(digits + behind), digits) << length << " " << c;
        }
    }
}

TEST(ReadWord, DeclinesWhatIsNoWord)
{
    EXPECT_EQ(any_word_in(""), "declined");
    EXPECT_EQ(any_word_in("   \n"), "declined");
    EXPECT_EQ(any_word_in("x1"), "declined");
    EXPECT_EQ(any_word_in("-"), "declined");
    EXPECT_EQ(any_word_in("- 1"), "declined");
    EXPECT_EQ(any_word_in(std::string("\0 1", 3)), "declined");
    EXPECT_EQ(any_word_in("\xff"), "declined");
}

TEST(ReadWord, DeclinesWhatLeavesTheRangeOrTheWord)
{
    EXPECT_EQ(any_word_in("2147483648"), "declined");
    EXPECT_EQ(any_word_in("99999999999999999999999999"), "declined");
    EXPECT_EQ(any_word_in(std::string(100000, '7')), "declined");
    EXPECT_EQ(word_in("255", 0, 255), "255");
    EXPECT_EQ(word_in("256", 0, 255), "declined");
    EXPECT_EQ(word_in("-1", 0, 255), "declined");
}

TEST(ReadWord, DeclinesForEverAfterOneDeclinedRead)
{
    opened_bytes bytes("1 x 2 3");
    std::int32_t table[4] = {9, 9, 9, 9};
    EXPECT_EQ(read_words(&bytes.file, 0, 9, 4, table), 0);
    EXPECT_EQ(table[0], 1);
    EXPECT_EQ(table[1], 0);
    EXPECT_EQ(table[2], 0);
    EXPECT_EQ(table[3], 0);
    number n;
    n.size = 0;
    EXPECT_EQ(read_number(&bytes.file, &n), 0);
    special_free(&n);
    char text[4];
    EXPECT_EQ(read_field(&bytes.file, 3, text), 0);
    EXPECT_EQ(read_line(&bytes.file, 3, text), 0);
}

TEST(ReadCodes, HoldsTheSixteenthBit)
{
    opened_bytes bytes("65535 41708 0 65536");
    std::uint16_t table[4];
    EXPECT_EQ(read_codes(&bytes.file, 65535, 4, table), 0);
    EXPECT_EQ(table[0], 65535);
    EXPECT_EQ(table[1], 41708);
    EXPECT_EQ(table[3], 0);
}

TEST(ReadNumber, TakesNormalNumbers)
{
    EXPECT_EQ(number_in("1 0"), " 0");
    EXPECT_EQ(number_in("1 -5"), " -5");
    EXPECT_EQ(number_in("3 1 0 268435455"), " 1 0 268435455");
    EXPECT_EQ(number_in("3 -1 0 -268435455"), " -1 0 -268435455");
}

TEST(ReadNumber, DeclinesCountsThatAreNone)
{
    EXPECT_EQ(number_in("0 1"), "declined");
    EXPECT_EQ(number_in("-2 1 1"), "declined");
    EXPECT_EQ(number_in("2147483647 1 1"), "declined");
    EXPECT_EQ(number_in("99999999999 1 1"), "declined");
    EXPECT_EQ(number_in("3 1 2"), "declined");
    EXPECT_EQ(number_in("2"), "declined");
}

TEST(ReadNumber, TakesTheLongestNumberAndNoLongerOne)
{
    std::string digits;
    for (int k = 0; k < 32768; ++k) digits += " 1";
    EXPECT_EQ(number_in("32767" + digits), digits.substr(2));
    EXPECT_EQ(number_in("32768" + digits), "declined");
}

TEST(ReadNumber, DeclinesDigitsThatBreakTheForm)
{
    EXPECT_EQ(number_in("1 268435456"), "declined");
    EXPECT_EQ(number_in("1 -268435456"), "declined");
    EXPECT_EQ(number_in("2 0 1"), "declined");
    EXPECT_EQ(number_in("2 1 -1"), "declined");
    EXPECT_EQ(number_in("3 -1 0 1"), "declined");
    EXPECT_EQ(number_in("3 1 2 x"), "declined");
}

TEST(ReadNumber, ReleasesTheOldChain)
{
    opened_bytes bytes("2 5 6 3 1 x");
    record_audit audit;
    number n;
    n.size = 0;
    special_set(7, &n);
    EXPECT_EQ(read_number(&bytes.file, &n), 1);
    EXPECT_EQ(n.size, 2);
    EXPECT_EQ(read_number(&bytes.file, &n), 0);
    EXPECT_TRUE(is_longint(&n, 0));
    special_free(&n);
    audit.expect_unchanged("read_number over an old chain");
}

TEST(ReadLine, CutsAtTheWidthAndLeavesTheLineEndOut)
{
    opened_bytes bytes("abcdef\n\nxy");
    char text[5] = {};
    EXPECT_EQ(read_line(&bytes.file, 4, text), 1);
    EXPECT_STREQ(text, "abcd");
    char empty[5] = {};
    EXPECT_EQ(read_line(&bytes.file, 4, empty), 1);
    EXPECT_STREQ(empty, "");
    char last[5] = {};
    EXPECT_EQ(read_line(&bytes.file, 4, last), 1);
    EXPECT_STREQ(last, "xy");
    EXPECT_EQ(read_line(&bytes.file, 4, last), 0);
}

TEST(ReadLine, TakesAnOverlongLineInPieces)
{
    opened_bytes bytes(std::string(1023, 'a') + "b\nc\n");
    char text[2] = {};
    EXPECT_EQ(read_line(&bytes.file, 1, text), 1);
    EXPECT_STREQ(text, "a");
    EXPECT_EQ(read_line(&bytes.file, 1, text), 1);
    EXPECT_STREQ(text, "b");
    EXPECT_EQ(read_line(&bytes.file, 1, text), 1);
    EXPECT_STREQ(text, "c");
}

TEST(ReadField, CutsAtTheWidthAndSkipsTheRest)
{
    opened_bytes bytes("  one\ttwothree four");
    char text[6];
    EXPECT_EQ(read_field(&bytes.file, 5, text), 1);
    EXPECT_STREQ(text, "one");
    EXPECT_EQ(read_field(&bytes.file, 5, text), 1);
    EXPECT_STREQ(text, "twoth");
    EXPECT_EQ(read_field(&bytes.file, 5, text), 1);
    EXPECT_STREQ(text, "four");
    EXPECT_EQ(read_field(&bytes.file, 5, text), 0);
    EXPECT_STREQ(text, "");
}

TEST(OpenDataFile, DeclinesWhatIsNoPlainFile)
{
    scratch_directory directory;
    ASSERT_EQ(mkdir((directory.path + "folder").c_str(), 0700), 0);
    ASSERT_EQ(mkfifo((directory.path + "pipe").c_str(), 0600), 0);
    data_file file;
    for (const char *name : {"nothing", "folder", "pipe"}) {
        EXPECT_EQ(open_data_file(directory.path.c_str(), name, &file), 0) << name;
        EXPECT_EQ(file.text, nullptr);
        std::int32_t v;
        EXPECT_EQ(read_word(&file, 0, 9, &v), 0);
        close_data_file(&file);
    }
    EXPECT_EQ(open_data_file(std::string(5000, 'x').c_str(), "nothing", &file), 0);
}

TEST(OpenDataFile, ReadsNoMoreThanTheLimitOfAHugeFile)
{
    opened_bytes bytes("5 ");
    EXPECT_EQ(bytes.file.end - bytes.file.at, 2);
    std::filesystem::resize_file(bytes.directory.path + "bytes", std::uintmax_t{1} << 32);
    data_file huge;
    EXPECT_EQ(open_data_file(bytes.directory.path.c_str(), "bytes", &huge), 1);
    EXPECT_EQ(huge.end - huge.text, data_file_limit);
    std::int32_t v;
    EXPECT_EQ(read_word(&huge, 0, 9, &v), 1);
    EXPECT_EQ(v, 5);
    EXPECT_EQ(read_word(&huge, 0, 9, &v), 0);
    close_data_file(&huge);
}
