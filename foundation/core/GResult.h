#pragma once

#include "foundation/core/GException.h"
#include "foundation/core/GString.h"

#include <cstdint>
#include <type_traits>
#include <utility>

// How an operation ended: it succeeded, it failed, or the user cancelled it. If it did not succeed, there is
// a reason for a person or the log, and also a code if somebody needs to know the kind of failure.
//
// The compiler warns if a result is not used. A sequence in which each step runs only if the one before
// succeeded is written like this:
//
//     return ReadFile().Then([&] { return Check(); }).Then([&] { return WriteFile(); });
//
// A plain value, for any thread.
class [[nodiscard]] GResult
{
public:
    static GResult Success() { return GResult(Kind::Succeeded, {}, 0); }

    // The reason is not empty.
    static GResult Failure(const GString& reason, int32_t code = 0)
    {
        return GResult(Kind::Failed, reason, code);
    }

    // Runs a step that may raise and that gives a GResult or nothing; an exception becomes the failure.
    template <typename Step>
    static GResult Catch(const Step& step)
    {
        try {
            if constexpr (std::is_same_v<decltype(step()), GResult>) {
                return step();
            } else {
                step();
                return Success();
            }
        } catch (const GException& error) {
            return Failure(error.GetDescription(), error.GetCode());
        }
    }

    static GResult Cancellation()
    {
        return GResult(Kind::Cancelled, QStringLiteral("The user cancelled."), 0);
    }

    bool HasSucceeded() const { return mKind == Kind::Succeeded; }
    bool WasCancelled() const { return mKind == Kind::Cancelled; }

    // After a success the reason is empty and the code is 0. The code is also 0 if none was given.
    const GString& GetReason() const { return mReason; }
    int32_t GetCode() const { return mCode; }

    // Runs the next step, which gives a GResult, unless an earlier step did not succeed.
    template <typename Step>
    GResult Then(Step&& step) const
    {
        return HasSucceeded() ? std::forward<Step>(step)() : *this;
    }

    // The same result with its reason between two texts, so that the whole says what was tried and why it
    // failed.
    GResult Within(const GString& before, const GString& after) const
    {
        return mKind == Kind::Failed ? Failure(before + mReason + after, mCode) : *this;
    }

private:
    enum class Kind
    {
        Succeeded,
        Failed,
        Cancelled
    };

    GResult(Kind kind, const GString& reason, int32_t code) : mKind(kind), mReason(reason), mCode(code) {}

    Kind mKind;
    GString mReason;
    int32_t mCode;
};
