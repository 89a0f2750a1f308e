// The console log: sinks, capture, clearing, and statements from several threads that never mix.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "base/Console.h"

namespace vellum {
namespace {

class CountingSink : public ConsoleSink {
  public:
    void append(std::string_view text) override { text_.append(text); }
    void clear() override { ++clears_; }
    std::string text_;
    int clears_ = 0;
};

TEST(Console, OneStatementIsOneWriteToEverySink) {
    auto sink = std::make_shared<CountingSink>();
    ConsoleCapture capture;
    EXPECT_FALSE(Console::instance().standardOutput());
    Console::instance().addSink(sink);
    console() << "value " << 42 << " real " << 0.5 << "\n";
    Console::instance().clear();
    Console::instance().removeSink(sink.get());
    console() << "after removal\n";
    EXPECT_EQ(sink->text_, "value 42 real 0.5\n");
    EXPECT_EQ(sink->clears_, 1);
    EXPECT_EQ(capture.text(), "after removal\n");
}

TEST(Console, CaptureRestoresStandardOutputAndNestedCapturesBothSee) {
    const bool before = Console::instance().standardOutput();
    {
        ConsoleCapture outer;
        {
            ConsoleCapture inner;
            console() << "both\n";
            EXPECT_EQ(inner.text(), "both\n");
        }
        console() << "outer only\n";
        EXPECT_EQ(outer.text(), "both\nouter only\n");
        outer.reset();
        EXPECT_EQ(outer.text(), "");
    }
    EXPECT_EQ(Console::instance().standardOutput(), before);
}

TEST(Console, StatementsFromSeveralThreadsNeverInterleave) {
    constexpr int kThreads = 6;
    constexpr int kLines = 400;
    ConsoleCapture capture;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < kLines; ++i)
                console() << "thread " << t << " line " << i << " " << std::string(40, 'a' + t)
                          << "\n";
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::istringstream lines(capture.text());
    std::vector<int> next(kThreads, 0);
    std::string line;
    int count = 0;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::string word1, word2, payload;
        int t = -1;
        int i = -1;
        fields >> word1 >> t >> word2 >> i >> payload;
        ASSERT_TRUE(t >= 0 && t < kThreads) << line;
        EXPECT_EQ(i, next[static_cast<std::size_t>(t)]++) << line;
        EXPECT_EQ(payload, std::string(40, static_cast<char>('a' + t))) << line;
        ++count;
    }
    EXPECT_EQ(count, kThreads * kLines);
}

}  // namespace
}  // namespace vellum
