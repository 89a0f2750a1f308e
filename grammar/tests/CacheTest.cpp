// The input source in string and file mode: reading to the end, seeks across the read-ahead
// buffer in both directions, excerpts and line numbers.
#include <gtest/gtest.h>

#include <string>

#include "base/Console.h"
#include "grammar/Cache.h"
#include "tests/support/TempFile.h"

namespace vellum {
namespace {

using test::TempFile;

// 3000 characters that differ from their neighbours, so a misplaced buffer shows.
std::string longText() {
    std::string text;
    for (int i = 0; i < 3000; ++i)
        text.push_back(static_cast<char>('!' + (i * 7 + i / 26) % 90));
    return text;
}

TEST(Cache, EndOfInputYieldsZeroWithoutAdvancing) {
    TempFile file("ab");
    Cache fromFile;
    ASSERT_TRUE(fromFile.open(file.path()));
    Cache fromText;
    ASSERT_TRUE(fromText.attach("ab"));
    for (Cache* cache : {&fromFile, &fromText}) {
        EXPECT_EQ(cache->length(), 2);
        EXPECT_EQ(cache->read(), 'a');
        EXPECT_EQ(cache->read(), 'b');
        EXPECT_EQ(cache->read(), 0);
        EXPECT_EQ(cache->read(), 0);
        EXPECT_EQ(cache->tell(), 2);
    }
}

TEST(Cache, SeeksBackAndForthAcrossTheBufferReadTheRightCharacter) {
    const std::string text = longText();
    TempFile file(text);
    for (long capacity : {1024L, 7L, 1L}) {
        Cache cache(capacity);
        ASSERT_TRUE(cache.open(file.path()));
        EXPECT_EQ(cache.length(), 3000);
        for (long at : {0L, 1023L, 1024L, 1025L, 2500L, 10L, 2047L, 2048L, 1L, 2999L, 1023L}) {
            cache.seek(at);
            EXPECT_EQ(cache.read(), text[static_cast<std::size_t>(at)]) << capacity << "@" << at;
            EXPECT_EQ(cache.tell(), at + 1);
        }
        cache.seek(0);
        std::string all;
        for (char c = cache.read(); c != 0; c = cache.read())
            all.push_back(c);
        EXPECT_EQ(all, text) << capacity;
        EXPECT_EQ(cache.tell(), 3000);
    }
}

TEST(Cache, ExcerptIsClampedAndLeavesThePositionAfterIt) {
    TempFile file("0123456789");
    Cache fromFile;
    ASSERT_TRUE(fromFile.open(file.path()));
    Cache fromText;
    ASSERT_TRUE(fromText.attach("0123456789"));
    const struct {
        long from, to;
        const char* expected;
        long after;
    } cases[] = {{-5, 3, "012", 3}, {7, 100, "789", 10}, {2, 5, "234", 5}, {4, 4, "", 4}};
    for (Cache* cache : {&fromFile, &fromText}) {
        for (const auto& c : cases) {
            std::string out = "stale";
            cache->excerpt(c.from, c.to, out);
            EXPECT_EQ(out, c.expected) << c.from << ".." << c.to;
            EXPECT_EQ(cache->tell(), c.after) << c.from << ".." << c.to;
        }
    }
}

TEST(Cache, ExcerptStopsAtACharacterZero) {
    TempFile file(std::string("abc\0def", 7));
    Cache cache;
    ASSERT_TRUE(cache.open(file.path()));
    std::string out;
    cache.excerpt(0, 7, out);
    EXPECT_EQ(out, "abc");
}

TEST(Cache, LineNumberCountsLineFeedsBeforeThePositionAndRestoresIt) {
    Cache cache;
    ASSERT_TRUE(cache.attach("a\nb\n\nc"));
    const struct {
        long at;
        int line;
    } cases[] = {{0, 1}, {1, 1}, {2, 2}, {4, 3}, {5, 4}, {6, 4}};
    for (const auto& c : cases) {
        cache.seek(c.at);
        EXPECT_EQ(cache.lineNumber(), c.line) << c.at;
        EXPECT_EQ(cache.tell(), c.at);
    }
    std::string lines;
    for (int i = 0; i < 1500; ++i)
        lines += "x\n";
    TempFile file(lines);
    Cache fromFile;
    ASSERT_TRUE(fromFile.open(file.path()));
    fromFile.seek(2400);
    EXPECT_EQ(fromFile.lineNumber(), 1201);
    EXPECT_EQ(fromFile.read(), 'x');
}

TEST(Cache, FailedOpenAndCloseLeaveAnEmptySource) {
    Cache cache;
    EXPECT_FALSE(cache.open("/nonexistent/folder/file.dg"));
    EXPECT_FALSE(cache.attach(static_cast<const char*>(nullptr)));
    EXPECT_EQ(cache.read(), 0);
    ASSERT_TRUE(cache.attach("abc"));
    cache.read();
    cache.close();
    EXPECT_EQ(cache.tell(), 0);
    EXPECT_EQ(cache.length(), 0);
    EXPECT_EQ(cache.read(), 0);
    TempFile empty("");
    ASSERT_TRUE(cache.open(empty.path()));
    EXPECT_EQ(cache.read(), 0);
}

TEST(Cache, BorrowedFileIsReadButLeftOpen) {
    TempFile file("xyz");
    std::FILE* f = std::fopen(file.path().c_str(), "rb");
    ASSERT_NE(f, nullptr);
    {
        Cache cache;
        ASSERT_TRUE(cache.attach(f));
        cache.seek(2);
        EXPECT_EQ(cache.read(), 'z');
        cache.close();
    }
    EXPECT_EQ(std::fseek(f, 0, SEEK_SET), 0);
    EXPECT_EQ(std::fgetc(f), 'x');
    std::fclose(f);
}

TEST(Cache, ZeroCapacityIsReportedAndTheSourceStillWorks) {
    ConsoleCapture capture;
    Cache cache(0);
    EXPECT_NE(capture.text().find("0 < Size"), std::string::npos);
    EXPECT_NE(capture.text().find("src/Cache"), std::string::npos);
    TempFile file("xyz");
    ASSERT_TRUE(cache.open(file.path()));
    std::string out;
    cache.excerpt(0, 3, out);
    EXPECT_EQ(out, "xyz");
}

}  // namespace
}  // namespace vellum
