#include "io/mjl.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/Scenario.h"

namespace {

class mjlRead : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        reader.emplace();
    }
    // The reader's tree must be gone before the scenario checks the allocations.
    void TearDown() override
    {
        reader.reset();
        Scenario::TearDown();
    }

    // Parses text under the name "doc.json"; returns the root or null.
    Package* parse(const std::string& text)
    {
        return reader->parse(text.data(), text.size(), "doc.json") ? reader->getRoot() : nullptr;
    }
    // Parses text that must fail and returns the message, consuming the logged error.
    std::string failure(const std::string& text)
    {
        EXPECT_FALSE(reader->parse(text.data(), text.size(), "doc.json")) << text;
        EXPECT_EQ(reader->getRoot(), nullptr);
        std::string error = reader->getError();
        expectLogged("mjl::parse:" + error);
        return error;
    }

    // Reads numbers as one array, its elements separated by separator, and checks that each is
    // read to the same bits as the general conversion gives. Returns the array (null when the
    // text did not read).
    Package* readAsTheGeneralConversion(const std::vector<std::string>& numbers, const std::string& separator)
    {
        std::string document = "[";
        for (const std::string& number : numbers)
            document += number + (&number == &numbers.back() ? "]" : separator);
        Package* root = parse(document);
        EXPECT_NE(root, nullptr);
        if (!root)
            return nullptr;
        EXPECT_EQ(root->getNumChildren(), static_cast<int>(numbers.size()));
        for (size_t i = 0; i < numbers.size() && i < static_cast<size_t>(root->getNumChildren()); ++i) {
            double expected = 0;
            std::from_chars(numbers[i].data(), numbers[i].data() + numbers[i].size(), expected);
            double read = root->getChild(static_cast<int>(i))->getDouble();
            if (std::memcmp(&read, &expected, sizeof read) != 0) {
                ADD_FAILURE() << numbers[i] << " read as " << read;
                break; // one is enough to see what went wrong
            }
        }
        return root;
    }

    std::optional<mjl> reader;
};

} // namespace

TEST_F(mjlRead, ReadsEveryTypeWithNamesAndOrder)
{
    Package* root = parse(R"({"name": "walk", "loop": true, "frames": 24, "speed": 1.5, "none": null,
                              "keys": [[0, 1.25], []], "meta": {}})");
    ASSERT_NE(root, nullptr);
    ASSERT_EQ(root->getNumChildren(), 7);
    EXPECT_STREQ(root->find("name")->getString(), "walk");
    EXPECT_TRUE(root->find("loop")->getBool());
    EXPECT_EQ(root->find("frames")->getType(), Package::INT);
    EXPECT_EQ(root->find("frames")->getInt(), 24);
    EXPECT_EQ(root->find("speed")->getType(), Package::DOUBLE);
    EXPECT_EQ(root->find("speed")->getDouble(), 1.5);
    EXPECT_TRUE(root->find("none")->isNull());
    Package* keys = root->find("keys");
    ASSERT_TRUE(keys->isArray());
    EXPECT_EQ(keys->getChild(0)->getChild(1)->getDouble(), 1.25);
    EXPECT_EQ(keys->getChild(1)->getNumChildren(), 0);
    EXPECT_TRUE(root->find("meta")->isObject());
    EXPECT_STREQ(root->getChild(6)->getName(), "meta");
}

TEST_F(mjlRead, IntegersThatFitInt64AreIntAndEverythingElseDouble)
{
    Package* root = parse("[9223372036854775807, -9223372036854775808, 9223372036854775808, 1.0, 1e2, "
                          "123456789012345678901234567890, -0]");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getChild(0)->getType(), Package::INT);
    EXPECT_EQ(root->getChild(0)->getInt(), INT64_MAX);
    EXPECT_EQ(root->getChild(1)->getInt(), INT64_MIN);
    EXPECT_EQ(root->getChild(2)->getType(), Package::DOUBLE);
    EXPECT_EQ(root->getChild(2)->getDouble(), 9223372036854775808.0);
    EXPECT_EQ(root->getChild(3)->getType(), Package::DOUBLE);
    EXPECT_EQ(root->getChild(4)->getType(), Package::DOUBLE);
    EXPECT_EQ(root->getChild(5)->getType(), Package::DOUBLE);
    EXPECT_EQ(root->getChild(5)->getDouble(), 1.2345678901234568e29);
    EXPECT_EQ(root->getChild(6)->getType(), Package::INT);
}

TEST_F(mjlRead, DecodesEscapesAndKeepsUtf8)
{
    Package* root = parse(R"(["a\"b\\c\/d\b\f\n\r\t", "\u00e9\u20ac\ud83d\ude00", "√©", "nul\u0000byte"])");
    ASSERT_NE(root, nullptr);
    EXPECT_STREQ(root->getChild(0)->getString(), "a\"b\\c/d\b\f\n\r\t");
    EXPECT_STREQ(root->getChild(1)->getString(), "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_STREQ(root->getChild(2)->getString(), "√©");
    EXPECT_EQ(std::string(root->getChild(3)->getString(), root->getChild(3)->getStringLength()),
              std::string("nul\0byte", 8));
}

TEST_F(mjlRead, GivesEveryNodeTheLineAndColumnWhereItsValueStarts)
{
    Package* root = parse("{\n  \"a\": 1,\n  \"list\": [\n    true, \"x\",\n\t{}\n  ]\n}\n");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getLine(), 1);
    EXPECT_EQ(root->getColumn(), 1);
    EXPECT_EQ(root->find("a")->getLine(), 2);
    EXPECT_EQ(root->find("a")->getColumn(), 8);
    Package* list = root->find("list");
    EXPECT_EQ(list->getLine(), 3);
    EXPECT_EQ(list->getColumn(), 11);
    EXPECT_EQ(list->getChild(0)->getLine(), 4);
    EXPECT_EQ(list->getChild(0)->getColumn(), 5);
    EXPECT_EQ(list->getChild(1)->getColumn(), 11);
    EXPECT_EQ(list->getChild(2)->getLine(), 5);
    EXPECT_EQ(list->getChild(2)->getColumn(), 2);
}

TEST_F(mjlRead, CountsLinesAcrossBlankLinesCarriageReturnsAndTabs)
{
    Package* root = parse("\n\r\n{\r\n\t\"a\":\n\n  [1,\r\n\r\n 2],\n \"b\"\n:\t\"x\"}\n\n");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getLine(), 3);
    EXPECT_EQ(root->getColumn(), 1);
    Package* list = root->find("a");
    EXPECT_EQ(list->getLine(), 6);
    EXPECT_EQ(list->getColumn(), 3);
    EXPECT_EQ(list->getChild(1)->getLine(), 8);
    EXPECT_EQ(list->getChild(1)->getColumn(), 2);
    EXPECT_EQ(root->find("b")->getLine(), 10);
    EXPECT_EQ(root->find("b")->getColumn(), 3);
}

TEST_F(mjlRead, AcceptsScalarRootsAndRepeatedMembers)
{
    Package* root = parse("  \"just text\"  ");
    ASSERT_NE(root, nullptr);
    EXPECT_STREQ(root->getString(), "just text");
    EXPECT_EQ(root->getColumn(), 3);
    root = parse("-12");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getInt(), -12);
    root = parse(R"({"a": 1, "a": 2})");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getNumChildren(), 2);
    EXPECT_EQ(root->find("a")->getInt(), 1);
    EXPECT_EQ(root->getChild(1)->getInt(), 2);
}

// Every syntax error names the line and column where reading stopped and says why, in words a
// user can act on.
TEST_F(mjlRead, ReportsTheLineColumnAndReasonOfEveryError)
{
    const std::pair<std::string, std::string> cases[] = {
        {"{\n  \"a\": 1\n  \"b\": 2\n}", "3:3: expected ',' or '}' after the member"},
        {"[1, 2,]", "1:7: invalid value"},
        {"{\"a\" 1}", "1:6: expected ':' after the member name"},
        {"{'a': 1}", "1:2: expected a member name in double quotes"},
        {"[1 2]", "1:4: expected ',' or ']' after the element"},
        {"[1] x", "1:5: unexpected text after the document's value"},
        {"[\n\"ab\ncd\"]", "2:4: control character in a string (it must be escaped)"},
        {"[\"\\x\"]", "1:3: invalid escape sequence in a string"},
        {"[\"\\u12G4\"]", "1:3: invalid \\u escape: four hexadecimal digits expected"},
        {"[\"\\ud800\"]", "1:3: invalid \\u escape: a high surrogate must be followed by a low surrogate"},
        {"[\"\xC3\x28\"]", "1:3: invalid UTF-8 in a string"},
        {"[1.]", "1:4: digits expected after the decimal point"},
        {"[1e]", "1:4: digits expected in the exponent"},
        {"[1e400]", "1:2: number too large for a double"},
        {"[0,\n 2.7976931348623157e308]", "2:2: number too large for a double"},
        {"[-0.0000000002e318]", "1:2: number too large for a double"},
        {"", "1:1: the document is empty"},
        {"  \n ", "2:2: the document is empty"},
        {"[1,\n 2", "2:3: unexpected end of the document inside an array"},
        {"{\"a\": 1", "1:8: unexpected end of the document inside an object"},
        {"[\"open", "1:7: unterminated string"},
        {std::string("[1]\0[2]", 7), "1:4: unexpected zero byte"},
        {std::string("[\"a\0b\"]", 7), "1:4: unexpected zero byte"},
    };
    for (const auto& [text, message] : cases)
        EXPECT_EQ(failure(text), "doc.json:" + message);
}

TEST_F(mjlRead, ReadsLongMantissasAndExtremeExponentsExactly)
{
    // This one used to run RapidJSON's own conversion out of its power-of-ten table.
    std::string tiny =
        std::string("4") + std::string(23, '0') + "." + std::string(20, '0') + "8" + std::string(90, '0') + "4E-441";
    std::string long_fraction = "0." + std::string(799, '0') + "1e790";
    Package* root = parse("[" + tiny + ", -1e-400, 4.9e-324, " + long_fraction + ", 12345678901234567890123e-3]");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getChild(0)->getType(), Package::DOUBLE);
    EXPECT_EQ(root->getChild(0)->getDouble(), 0.0);
    EXPECT_TRUE(std::signbit(root->getChild(1)->getDouble()));
    EXPECT_EQ(root->getChild(1)->getDouble(), 0.0);
    EXPECT_EQ(root->getChild(2)->getDouble(), 4.9406564584124654e-324);
    EXPECT_EQ(root->getChild(3)->getDouble(), 1e-10);
    EXPECT_EQ(root->getChild(4)->getDouble(), 12345678901234567890.123);
}

// Most decimals are read with one multiplication or division, which is only exact for short
// mantissas and small powers of ten; every other one must still come out as the nearest double.
TEST_F(mjlRead, ReadsEveryKindOfDecimalToTheSameValueAsTheGeneralConversion)
{
    std::mt19937_64 random(7);
    std::vector<std::string> numbers = {
        "9007199254740993.0",    // 2^53 + 1: exactly halfway between two doubles, rounds to even
        "9007199254740995.0",    // halfway again, rounds up to even
        "18014398509481985.0",   // 2^54 + 1, halfway after the extended step as well
        // A hair off halfway between two doubles: a conversion that rounds on the way (say to 64
        // bits first) lands exactly halfway and then goes the wrong way.
        "1752358245595152967e6", "1229626887933356938e11", "8081861358198046956e5", "649150067208694977e-20",
        "0.1", "-0.0", "0.000000000000000000000000001", "123456789012345678.9", "9999999999999999999.0",
        "1.7976931348623157e308", "4.9e-324", "2.2250738585072011e-308", "1e22", "1e23", "-1e-22", "1e-23",
        "0.30000000000000004", "1234567890.1234567e-10", "5e-324", "1.00000000000000000000000000001"};
    char text[64];
    for (int i = 0; i < 30000; ++i) {
        uint64_t bits = random();
        double any = 0;
        std::memcpy(&any, &bits, sizeof any);
        if (std::isfinite(any))
            numbers.emplace_back(text, std::to_chars(text, text + sizeof text, any).ptr);
        float single = std::uniform_real_distribution<float>(-1000.0f, 1000.0f)(random);
        numbers.emplace_back(text, std::to_chars(text, text + sizeof text, single).ptr);
        // Up to 21 digits with the point anywhere and a small exponent: both sides of every limit.
        std::string digits = std::to_string(1 + random() % 9);
        for (int n = static_cast<int>(random() % 21); n > 0; --n)
            digits += static_cast<char>('0' + random() % 10);
        size_t point = 1 + random() % digits.size();
        std::string decimal = digits.substr(0, point) + "." + digits.substr(point) + "0";
        numbers.push_back(decimal);
        numbers.push_back(decimal + "e" + std::to_string(static_cast<int>(random() % 70) - 35));
        // Leading zeros: the decimals count, the digits do not.
        numbers.push_back("0." + std::string(random() % 12, '0') + digits);
    }
    readAsTheGeneralConversion(numbers, ",");
}

// Short decimals take the reader's own value, which is exact only up to 15 digits and powers of ten
// within 10^-22 to 10^22: numbers on both sides of each limit, in every way of writing them.
TEST_F(mjlRead, ReadsDecimalsAtTheLimitsOfTheQuickConversionToTheNearestValue)
{
    std::mt19937_64 random(11);
    std::vector<std::string> numbers = {"-0.0", "-0e5", "0.000000000000001", "0.0000000000000001", "123456789012345e-22",
                                        "123456789012345e-23", "999999999999999e22", "999999999999999e23",
                                        "1.23456789012345e-7", "1.234567890123456e-7", "5e-0022", "5e+022"};
    for (int i = 0; i < 20000; ++i) {
        std::string digits = std::to_string(1 + random() % 9);
        for (int n = 13 + static_cast<int>(random() % 4); n > 0; --n) // 14 to 17 digits
            digits += static_cast<char>('0' + random() % 10);
        int power = static_cast<int>(random() % 51) - 25;
        size_t point = random() % digits.size();
        std::string decimal = point ? digits.substr(0, point) + "." + digits.substr(point) : digits;
        int exponent = power + static_cast<int>(digits.size() - (point ? point : digits.size()));
        std::string mark = std::string(random() % 2 ? "E" : "e") + (exponent >= 0 && random() % 2 ? "+" : "");
        numbers.push_back((random() % 2 ? "-" : "") + decimal + mark + std::to_string(exponent));
        numbers.push_back(digits.substr(0, 1 + random() % 6) + mark + std::to_string(exponent));
        numbers.push_back("0." + std::string(random() % 4, '0') + digits.substr(0, 1 + random() % 16));
    }
    Package* root = readAsTheGeneralConversion(numbers, ",\n");
    ASSERT_NE(root, nullptr);
    EXPECT_TRUE(std::signbit(root->getChild(0)->getDouble()));
    EXPECT_TRUE(std::signbit(root->getChild(1)->getDouble()));
}

TEST_F(mjlRead, ContainersReadFromTextGrowInPlaceWhenChildrenAreAdded)
{
    auto member = [](int i) {
        std::string name = std::to_string(i);
        name.insert(name.begin(), 'm');
        return name;
    };
    // Every read size from empty to past the first doubling of the room for added children.
    for (int read = 0; read < 10; ++read) {
        std::string document = "{";
        for (int i = 0; i < read; ++i)
            document += (i ? ", \"" : "\"") + member(i) + "\": " + std::to_string(i);
        Package* root = parse(document + "}");
        ASSERT_NE(root, nullptr) << document;
        Package* first = root->getChild(0);
        for (int i = read; i < read + 40; ++i)
            root->addInt(member(i).c_str(), i);
        ASSERT_EQ(root->getNumChildren(), read + 40);
        if (read > 0) {
            EXPECT_EQ(root->getChild(0), first);
        }
        for (int i = 0; i < read + 40; ++i) {
            EXPECT_EQ(root->getChild(i)->getInt(), i);
            EXPECT_EQ(root->getChild(i)->getName(), member(i));
            EXPECT_EQ(root->getChild(i)->getNameLength(), static_cast<int>(member(i).size()));
        }
        EXPECT_EQ(root->find(member(read + 39).c_str()), root->getChild(read + 39));
    }
}

TEST_F(mjlRead, MemberNamesKeepZeroBytesAndTheirLength)
{
    Package* root = parse("{\"a\\u0000b\": 1, \"\": 2}");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getChild(0)->getNameLength(), 3);
    EXPECT_EQ(std::memcmp(root->getChild(0)->getName(), "a\0b", 4), 0);
    EXPECT_EQ(root->getChild(1)->getNameLength(), 0);
    EXPECT_STREQ(root->getChild(1)->getName(), "");
}

TEST_F(mjlRead, NeverReadsPastTheEndOfTheCallersText)
{
    // Each prefix sits alone in a heap block of its exact size, so the address sanitizer stops on
    // any byte read beyond it.
    const std::string document = "{\"position\\u00e9\": [1.5e-3, -20, true, null], "
                                 "\"n\\u00e4me\": \"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xAC\"}";
    for (size_t size = 0; size < document.size(); ++size) {
        std::vector<char> prefix(document.begin(), document.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(reader->parse(prefix.data(), prefix.size(), "doc.json")) << size;
        expectLogged("mjl::parse:" + reader->getError());
    }
    std::vector<char> cut_in_a_character = {'{', '"', 'p', 'o', 's', 'i', 't', 'i', 'o', 'n', '\xEB'};
    EXPECT_FALSE(reader->parse(cut_in_a_character.data(), cut_in_a_character.size(), "doc.json"));
    EXPECT_EQ(reader->getError(), "doc.json:1:11: invalid UTF-8 in a string");
    expectLogged("mjl::parse:" + reader->getError());
}

TEST_F(mjlRead, AcceptsNestingUpToTheLimitAndRejectsDeeper)
{
    std::string deepest = std::string(mjl::MAX_DEPTH, '[') + std::string(mjl::MAX_DEPTH, ']');
    Package* root = parse(deepest);
    ASSERT_NE(root, nullptr);
    int depth = 0;
    for (Package* node = root; node; node = node->getChild(0))
        ++depth;
    EXPECT_EQ(depth, mjl::MAX_DEPTH);

    std::string deeper = "{\"a\":\n" + std::string(mjl::MAX_DEPTH, '[') + std::string(mjl::MAX_DEPTH, ']') + "}";
    EXPECT_EQ(failure(deeper), "doc.json:2:512: nesting deeper than 512 levels");
}

TEST_F(mjlRead, SurvivesAMillionOpeningBrackets)
{
    EXPECT_EQ(failure(std::string(1000000, '[')), "doc.json:1:513: nesting deeper than 512 levels");
    EXPECT_NE(failure(std::string(1000000, '"')), "");
}

// A file that cannot be read names itself and the reason, and drops the tree of the previous file.
TEST_F(mjlRead, OpenReadsAFileAndNamesThePathInEveryFailure)
{
    TempDir dir;
    std::string good = dir.file("good.json");
    ASSERT_TRUE(writeFileText(good, "{\"frames\": [1, 2, 3]}\n"));
    ASSERT_TRUE(reader->open(good.c_str()));
    EXPECT_EQ(reader->getError(), "");
    ASSERT_NE(reader->getRoot(), nullptr);
    EXPECT_EQ(reader->getRoot()->find("frames")->getNumChildren(), 3);

    std::string bad = dir.file("bad.json");
    ASSERT_TRUE(writeFileText(bad, "{\n  \"a\": tru\n}\n"));
    EXPECT_FALSE(reader->open(bad.c_str()));
    EXPECT_EQ(reader->getRoot(), nullptr);
    EXPECT_EQ(reader->getError(), bad + ":2:8: invalid value");
    expectLogged("mjl::open:" + bad + ":2:8: invalid value");

    std::string missing = dir.file("missing.json");
    EXPECT_FALSE(reader->open(missing.c_str()));
    expectLogged("mjl::open:" + missing + ": cannot open: No such file or directory");
    EXPECT_FALSE(reader->open(dir.path().c_str()));
    expectLogged(dir.path() + ": cannot open: it is a folder");
}

TEST_F(mjlRead, KeepsShortArraysOfNumbersAsRowsWhenAsked)
{
    struct Case {
        const char* text;
        bool row;
    } cases[] = {
        {"[0.5, -2, 1e3, 7]", true},
        {"[1, 9007199254740992]", true},
        {"[1, 9007199254740993]", false}, // an integer a double cannot hold
        {"[1, \"two\"]", false},
        {"[1, [2]]", false},
        {"[]", false},
        {"[0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0]", false}, // 33 numbers
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        std::string text = std::string("{\n  \"a\": ") + c.text + "\n}\n";
        mjl plain;
        ASSERT_TRUE(plain.parse(text.data(), text.size(), "doc.json"));
        ASSERT_TRUE(reader->parse(text.data(), text.size(), "doc.json", mjl::NUMBER_ROWS));
        const Package* array = plain.getRoot()->find("a");
        const Package* kept = reader->getRoot()->find("a");
        EXPECT_EQ(kept->isNumbers(), c.row);
        EXPECT_TRUE(kept->equals(*array));
        EXPECT_TRUE(array->equals(*kept));
        std::string written, expected;
        EXPECT_TRUE(mjl::write(reader->getRoot(), written));
        EXPECT_TRUE(mjl::write(plain.getRoot(), expected));
        EXPECT_EQ(written, expected);
        for (int i = 0; i < kept->getNumNumbers(); ++i) {
            const Package* node = array->getChild(i);
            EXPECT_EQ(kept->getNumber(i), node->getDouble());
            EXPECT_EQ(kept->isIntegerNumber(i), node->getType() == Package::INT);
            EXPECT_EQ(kept->getNumberLine(i), node->getLine());
            EXPECT_EQ(kept->getNumberColumn(i), node->getColumn());
        }
    }
    // A row differs from an array of other numbers.
    ASSERT_TRUE(reader->parse("[1, 2]", 6, "doc.json", mjl::NUMBER_ROWS));
    mjl other;
    ASSERT_TRUE(other.parse("[1, 3]", 6, "doc.json"));
    EXPECT_FALSE(reader->getRoot()->equals(*other.getRoot()));
}

TEST_F(mjlRead, ShowsAListenerTheElementsOfItsArrayAsTheyEnd)
{
    // Records what it is shown, checking each element against the tree once the parse is over.
    struct Listener : mjl::ElementListener {
        std::vector<std::pair<int, const Package*>> shown;
        std::vector<bool> ends;
        const char* arrayName() const override { return "list"; }
        void element(int index, const Package* node) override { shown.emplace_back(index, node); }
        void end(bool parsed) override { ends.push_back(parsed); }
    } listener;
    // Only the root's first "list" is followed; scalars are not shown, short number arrays are.
    const std::string text = R"({"x": {"list": [{"a": 1}]}, "list": [{"a": [1, {"b": 2}]}, 5, [1, 2],
        {"c": [{"d": 3}]}, []], "list": [{"z": 0}]})";
    ASSERT_TRUE(reader->parse(text.data(), text.size(), "doc.json", mjl::NUMBER_ROWS, &listener));
    EXPECT_EQ(listener.ends, std::vector<bool>{true});
    const Package* list = reader->getRoot()->find("list");
    ASSERT_EQ(listener.shown.size(), 4u);
    const int indexes[] = {0, 2, 3, 4};
    for (size_t i = 0; i < listener.shown.size(); ++i) {
        EXPECT_EQ(listener.shown[i].first, indexes[i]);
        EXPECT_TRUE(listener.shown[i].second->equals(*list->getChild(indexes[i]))) << i;
    }
    // A document that fails ends the listener before its tree is dropped.
    listener.shown.clear();
    listener.ends.clear();
    const std::string cut = R"({"list": [{}, {})";
    EXPECT_FALSE(reader->parse(cut.data(), cut.size(), "doc.json", mjl::DEFAULT, &listener));
    expectLogged("mjl::parse:doc.json:1:17: unexpected end of the document inside an array");
    EXPECT_EQ(listener.shown.size(), 2u);
    EXPECT_EQ(listener.ends, std::vector<bool>{false});
}
