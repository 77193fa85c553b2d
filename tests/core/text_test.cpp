// SPDX-License-Identifier: MIT
// Texts: storage, Unicode, searching, numbers; statuses and their texts.
#include "devhost/util/Terminal.h"
#include "host/base/TapiCast.h"
#include "host/core/ZStatus.h"
#include "host/core/ZString.h"
#include "host/core/ZStringArray.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::wstring wide(const Tstring &text) {
    return {text.asW(), text.numChars()};
}

TEST(Text, KeepsEveryLengthThroughAssignmentCopyMoveAndUtf8) {
    for (const unsigned count : {0u, 1u, 22u, 23u, 24u, 1023u, 1024u, 5000u}) {
        std::wstring characters(count, L'a');
        if (count)
            characters.back() = L'\U0001F3A8';
        Tstring text(L"an earlier text that is longer than the room inside");
        text.asUTF8();
        text.set(characters.data(), count);
        EXPECT_EQ(wide(text), characters);
        EXPECT_EQ(text.asW()[count], L'\0');
        Tstring copy;
        copy = text;
        EXPECT_EQ(copy, text);
        Tstring moved(std::move(copy));
        EXPECT_EQ(wide(moved), characters);
        EXPECT_EQ(Tstring(moved.asUTF8()), text);
        text = Tstring(L"b");
        EXPECT_EQ(wide(text), L"b");
        EXPECT_STREQ(text.asUTF8(), "b");
    }
}

TEST(Text, SetAndAppendMayUseTheTextItself) {
    Tstring text(L"0123456789");
    text.set(text.asW() + 2, 5);
    EXPECT_EQ(wide(text), L"23456");
    for (int i = 0; i < 4; ++i)
        text.append(text.asW(), text.numChars());
    EXPECT_EQ(text.numChars(), 80u);
    EXPECT_EQ(wide(text).substr(70), L"2345623456");
}

TEST(Text, GrowsByDoubling) {
    Tstring text;
    int moves = 0;
    for (unsigned i = 0; i < 10000; ++i) {
        const wchar_t *const before = text.asW();
        text.append(L"x", 1);
        moves += text.asW() != before;
    }
    EXPECT_LE(moves, 14); // of 2^14 characters
}

TEST(Text, ConvertsUtf8BothWays) {
    const struct {
        std::wstring characters;
        std::string bytes;
    } pairs[] = {
        {L"\x7F\x80\u07FF", "\x7F\xC2\x80\xDF\xBF"},
        {L"\u0800\uFFFD\uFFFF", "\xE0\xA0\x80\xEF\xBF\xBD\xEF\xBF\xBF"},
        {L"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        {std::wstring(1, wchar_t{0xD800}), "\xED\xA0\x80"},
    };
    for (const auto &pair : pairs) {
        const ZString fromBytes(pair.bytes.c_str());
        EXPECT_EQ(wide(fromBytes), pair.characters);
        const ZString fromWide(pair.characters.c_str());
        EXPECT_EQ(fromWide.asUTF8(), pair.bytes);
        EXPECT_EQ(fromWide.numBytes(), pair.bytes.size());
    }
}

TEST(Text, InvalidUtf8BecomesReplacementCharacters) {
    const struct {
        const char *bytes;
        std::wstring characters;
    } cases[] = {
        {"a\x80z", L"a\uFFFDz"},                             // a lone continuation
        {"\xC0\x80z", L"\uFFFD\uFFFDz"},                     // an overlong null
        {"\xE0\x80\x80", L"\uFFFD\uFFFD\uFFFD"},             // overlong, three bytes
        {"\xF4\x90\x80\x80z", L"\uFFFD\uFFFD\uFFFD\uFFFDz"}, // past the last code point
        {"ab\xE2\x82", L"ab\uFFFD\uFFFD"},                   // cut short
    };
    for (const auto &c : cases)
        EXPECT_EQ(wide(ZString(c.bytes)), c.characters) << c.bytes;
    const wchar_t beyond[] = {wchar_t{0x110000}, 0};
    EXPECT_STREQ(ZString(beyond).asUTF8(), "\xEF\xBF\xBD");
}

TEST(Text, NullsCountAndNullPointersAreEmpty) {
    const ZString withNull(L"a\0b", 3);
    EXPECT_EQ(withNull.length(), 3u);
    EXPECT_NE(withNull, ZString("a"));
    EXPECT_EQ(ZString(static_cast<const char *>(nullptr)).length(), 0u);
    EXPECT_EQ(ZString(static_cast<const wchar_t *>(nullptr)).length(), 0u);
    EXPECT_LT(ZString(L"\uFFFF"), ZString(L"\U00010000"));
}

TEST(Text, ATerminalGetsNothingThatItObeys) {
    // NOLINTBEGIN(misc-misleading-bidirectional): these are what it must not get
    const std::pair<const char *, const char *> cases[] = {
        {"plain \u00e4 \u200d\u2030", "plain \u00e4 \u200d\u2030"},
        {"\x1b]0;title\x07", "\\u001b]0;title\\u0007"},
        {"a\nb\x7f\u0085\u009f\u00a0", "a\\u000ab\\u007f\\u0085\\u009f\u00a0"},
        {"\u200e\u2027\u2028\u2029\u202e\u202f", "\\u200e\u2027\\u2028\\u2029\\u202e\u202f"},
        {"\u2065\u2066\u2069\u206a", "\u2065\\u2066\\u2069\u206a"}};
    // NOLINTEND(misc-misleading-bidirectional)
    for (const auto &[text, shown] : cases)
        EXPECT_EQ(devhost::harmless(text), shown);
}

TEST(ZString, SearchesAndCuts) {
    const ZString path(L"|grp|\U0001F3A8|shape");
    EXPECT_EQ(path.index('|'), 0);
    EXPECT_EQ(path.rindex('|'), 6);
    EXPECT_EQ(path.indexW(L'\U0001F3A8'), 5);
    EXPECT_EQ(path.substring(1, 3), ZString("grp"));
    EXPECT_EQ(path.substring(7, 99), ZString("shape"));
    EXPECT_EQ(path.substring(3, 1).length(), 0u);

    // The text may be one of the results, which then give its memory back.
    ZStringArray parts(1, "longer than the room inside,and a second part");
    ASSERT_TRUE(parts[0].split(',', parts));
    EXPECT_EQ(parts.join("/"), ZString("longer than the room inside/and a second part"));

    ZString text("a.b.a");
    EXPECT_TRUE(text.substitute("a", "long replacement of some length"));
    EXPECT_EQ(text, ZString("long replacement of some length.b.a"));
    EXPECT_EQ(text.substitute("", "x").statusCode(), ZStatus::kNotFound);
}

TEST(ZString, ReadsAndWritesNumbers) {
    const struct {
        const char *text;
        bool isInt, isUnsigned, isDouble;
        double value;
    } cases[] = {
        {"0", true, true, true, 0},
        {"-12", true, false, true, -12},
        {"2147483647", true, true, true, 2147483647.0},
        {"2147483648", false, true, true, 2147483648.0},
        {"4294967296", false, false, true, 4294967296.0},
        {"1.5e3", false, false, true, 1500},
        {"1e999", false, false, false, 0},
        {"nan", false, false, false, 0},
        {"3 ", false, false, false, 0},
        {"0x10", false, false, false, 0},
    };
    for (const auto &c : cases) {
        const ZString text(c.text);
        EXPECT_EQ(text.isInt(), c.isInt) << c.text;
        EXPECT_EQ(text.asInt(), c.isInt ? static_cast<int>(c.value) : 0) << c.text;
        EXPECT_EQ(text.isUnsigned(), c.isUnsigned) << c.text;
        EXPECT_EQ(text.asUnsigned(), c.isUnsigned ? static_cast<unsigned>(c.value) : 0u) << c.text;
        EXPECT_EQ(text.isDouble(), c.isDouble) << c.text;
        EXPECT_EQ(text.asDouble(), c.value) << c.text;
    }
    EXPECT_FALSE(ZString("1e39").isFloat());
    ZString number;
    number.set(0.1);
    EXPECT_EQ(number, ZString("0.1"));
    EXPECT_TRUE(number.set(2.7, 0));
    EXPECT_EQ(number, ZString("3"));
    EXPECT_TRUE(number.set(2.7, 2));
    EXPECT_EQ(number, ZString("2.70"));
    EXPECT_EQ(number.set(1, -1), ZStatus::kInvalidParameter);
    EXPECT_EQ(number.set(1, 100), ZStatus::kInvalidParameter);
    EXPECT_EQ(number, ZString("2.70"));
    EXPECT_TRUE(number.set(1, 99));
}

TEST(ZStringArray, IsTheBaseArray) {
    ZStringArray array(1, "one");
    TstringArray &base = TapiCast::stringArray(array);
    base.changeLogicalSizeTo(3);
    base[2] = Tstring(L"three");
    EXPECT_TRUE(array.append(array[0]));
    EXPECT_EQ(array.join(","), ZString("one,,three,one"));
}

TEST(ZStatus, TellsCodeAndText) {
    const ZStatus failed(ZStatus::kInvalidParameter, "the width is 0");
    EXPECT_STREQ(failed.errorString().asChar(), "(kInvalidParameter): the width is 0");
    EXPECT_STREQ(ZStatus(ZStatus::kSuccess, "ignored").errorString().asChar(),
                 ZStatus().errorString().asChar());
}

} // namespace
