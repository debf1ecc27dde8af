#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <utility>

// While one lives, what it has to say stands behind each failure of a test.
class FailureNote : private testing::EmptyTestEventListener
{
public:
    explicit FailureNote(std::function<std::string()> say) : mSay(std::move(say))
    {
        testing::UnitTest::GetInstance()->listeners().Append(this);
    }
    ~FailureNote() override { testing::UnitTest::GetInstance()->listeners().Release(this); }
    FailureNote(const FailureNote&) = delete;
    FailureNote& operator=(const FailureNote&) = delete;

private:
    void OnTestPartResult(const testing::TestPartResult& result) override
    {
        if (result.failed())
            std::printf("%s\n", mSay().c_str());
    }

    std::function<std::string()> mSay;
};
