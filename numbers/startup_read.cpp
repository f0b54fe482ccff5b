// numbers/startup_read.cpp -- words and numbers out of a buffer.
//
// The buffer ends in NULs, which are neither blanks nor digits, so the inner loops need no test for the end.
// The first eight digits of a word are taken at once, since a loop is left by a branch that nothing
// foretells; a longer word is gathered in 64 bits and given up as soon as it leaves 32. A chain of digits is
// built from the head in place and belongs to its number at every moment, so a number that breaks off is
// released by the number's own rule.
#include "numbers/startup_read.h"
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kelmar {

static constexpr std::int32_t line_limit = 1023;  // bytes of a line, its end included
static constexpr std::size_t text_end = 8;        // NULs behind a text

// Opening ------------------------------------------------------------------------------------------------

// Return the bytes of the open plain file, at most data_file_limit, and NULs behind them; null when that
// fails.
static char *read_whole(int descriptor, std::int64_t *size)
{
    struct stat facts_of;
    if (fstat(descriptor, &facts_of) != 0 || !S_ISREG(facts_of.st_mode)) return nullptr;
    const std::int64_t room = facts_of.st_size < data_file_limit ? facts_of.st_size : data_file_limit;
    auto *text = static_cast<char *>(std::malloc(static_cast<std::size_t>(room) + text_end));
    if (!text) return nullptr;
    *size = 0;
    while (*size < room) {
        const ssize_t got = read(descriptor, text + *size, static_cast<std::size_t>(room - *size));
        if (got <= 0) break;
        *size += got;
    }
    std::memset(text + *size, 0, text_end);
    return text;
}

int open_data_file(const char *directory, const char *name, data_file *file)
{
    *file = {nullptr, nullptr, nullptr, 1};
    char path[PATH_MAX];
    const int length = std::snprintf(path, sizeof path, "%s%s", directory, name);
    if (length < 0 || length >= PATH_MAX) return 0;
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);  // no waiting for a pipe
    if (descriptor < 0) return 0;
    std::int64_t size = 0;
    char *text = read_whole(descriptor, &size);
    close(descriptor);
    if (!text) return 0;
    *file = {text, text, text + size, 0};
    return 1;
}

void close_data_file(data_file *file)
{
    std::free(file->text);
    *file = {nullptr, nullptr, nullptr, 1};
}

// Words --------------------------------------------------------------------------------------------------

static inline bool is_blank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

static inline unsigned digit_value(char c)
{
    return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0';
}

static int decline(data_file *file)
{
    file->damaged = 1;
    return 0;
}

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "leading_digits wants the first byte lowest");

// Return the number that the digits at p make, at most eight of them, and *count = how many they are.
static inline std::uint64_t leading_digits(const char *p, unsigned *count)
{
    std::uint64_t bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    bytes ^= 0x3030303030303030;
    // The lowest byte that is no digit sets its bit 7; what it carries upward is of no interest.
    const std::uint64_t others = (bytes | (bytes + 0x7676767676767676)) & 0x8080808080808080;
    if (others & 0x80) {
        *count = 0;
        return 0;
    }
    *count = others ? static_cast<unsigned>(__builtin_ctzll(others)) / 8 : 8;
    bytes <<= 64 - 8 * *count;  // zeros lead
    bytes = (bytes * 10 + (bytes >> 8)) & 0x00ff00ff00ff00ff;
    bytes = (bytes * 100 + (bytes >> 16)) & 0x0000ffff0000ffff;
    return (bytes * 10000 + (bytes >> 32)) & 0xffffffff;
}

// *v = the word at p, which is to be in low .. high. Return what is behind it. Declines (null): there is no
// such word.
static inline const char *take_word(const char *p, std::int32_t low, std::int32_t high, std::int32_t *v)
{
    while (is_blank(*p)) ++p;
    const bool negative = *p == '-';
    if (negative) ++p;
    unsigned count;
    auto word = static_cast<std::int64_t>(leading_digits(p, &count));
    if (count == 0) return nullptr;
    p += count;
    if (count == 8) {
        for (unsigned d = digit_value(*p); d <= 9; d = digit_value(*++p)) {
            word = 10 * word + d;
            if (word > INT32_MAX) return nullptr;
        }
    }
    if (negative) word = -word;
    if (word < low || word > high) return nullptr;
    *v = static_cast<std::int32_t>(word);
    return p;
}

int read_word(data_file *file, std::int32_t low, std::int32_t high, std::int32_t *v)
{
    *v = 0;
    if (file->damaged) return 0;
    const char *const behind = take_word(file->at, low, high, v);
    if (!behind) return decline(file);
    file->at = behind;
    return 1;
}

// Fill a table of words or codes; with zeros from the word where the read declines. The place in the text is
// held in a register, since each word has to wait for the end of the one before it.
template <class T>
static int take_words(data_file *file, std::int32_t low, std::int32_t high, std::int32_t count, T *table)
{
    std::int32_t k = 0;
    const char *p = file->damaged ? nullptr : file->at;
    for (; p && k < count; ++k) {
        std::int32_t v = 0;
        const char *const behind = take_word(p, low, high, &v);
        if (!behind) break;
        table[k] = static_cast<T>(v);
        p = behind;
    }
    if (p) file->at = p;
    if (k < count) decline(file);
    for (; k < count; ++k) table[k] = 0;
    return !file->damaged;
}

int read_words(data_file *file, std::int32_t low, std::int32_t high, std::int32_t count, std::int32_t *table)
{
    return take_words(file, low, high, count, table);
}

int read_codes(data_file *file, std::int32_t high, std::int32_t count, std::uint16_t *table)
{
    return take_words(file, 0, high, count, table);
}

// Numbers ------------------------------------------------------------------------------------------------

// The digit d may follow digits of which `sign` is the sign so far: 0 as long as all of them are 0.
static bool agrees(std::int32_t d, std::int32_t *sign)
{
    if (d == 0) return true;
    const std::int32_t own = d > 0 ? 1 : -1;
    if (*sign == 0) *sign = own;
    return *sign == own;
}

// Append the count - 1 digits behind the head of n.
static int read_tail(data_file *file, std::int32_t count, std::int32_t base, number *n)
{
    std::int32_t sign = 0;
    agrees(n->head->digit, &sign);
    while (n->size < count) {
        std::int32_t d;
        if (!read_word(file, 1 - base, base - 1, &d)) return 0;
        if (!agrees(d, &sign)) return decline(file);
        n->tail->next = new_digit(d, nullptr);
        n->tail = n->tail->next;
        ++n->size;
    }
    return 1;
}

int read_digits(data_file *file, std::int32_t first, std::int32_t count, std::int32_t base, number *n)
{
    const bool legal = count >= 1 && count <= digits_limit && first > -base && first < base &&
                       (first != 0 || count == 1);
    if (!legal) decline(file);
    special_free(n);
    n->head = n->tail = new_digit(first, nullptr);
    n->size = 1;
    if (!file->damaged && read_tail(file, count, base, n)) return 1;
    special_free(n);
    n->head = n->tail = new_digit(0, nullptr);
    n->size = 1;
    return 0;
}

int read_number(data_file *file, number *n)
{
    std::int32_t count, first;
    read_word(file, 1, digits_limit, &count);
    read_word(file, 1 - digit_base, digit_base - 1, &first);
    return read_digits(file, first, count, digit_base, n);
}

// Texts --------------------------------------------------------------------------------------------------

int read_line(data_file *file, std::int32_t width, char *text)
{
    if (file->damaged || file->at == file->end) return decline(file);
    const char *line = file->at;
    const char *stop = file->end - line > line_limit ? line + line_limit : file->end;
    const char *p = line;
    while (p < stop && *p != '\n') ++p;
    for (std::int32_t k = 0; k < width && line + k < p && line[k]; ++k) text[k] = line[k];
    file->at = p < stop ? p + 1 : p;
    return 1;
}

int read_field(data_file *file, std::int32_t width, char *text)
{
    text[0] = '\0';
    if (file->damaged) return 0;
    const char *p = file->at;
    while (is_blank(*p)) ++p;
    if (p == file->end || !*p) return decline(file);
    std::int32_t length = 0;
    for (; *p && !is_blank(*p); ++p) {
        if (length < width) text[length++] = *p;
    }
    text[length] = '\0';
    file->at = p;
    return 1;
}

}  // namespace kelmar
