#pragma once

#include "foundation/core/GException.h"
#include "foundation/core/GString.h"

#include <cstdint>
#include <type_traits>
#include <utility>

// How an operation ended: it succeeded, it failed, or the user cancelled it. What did not succeed has a
// reason for a person or the log, and, where somebody acts upon the kind of failure, a code.
//
// The compiler warns where a result is dropped. A sequence of steps, of which each runs only after the
// success of the one before, reads as one:
//
//     return ReadFile().Then([&] { return Check(); }).Then([&] { return WriteFile(); });
//
// A plain value: any thread.
class [[nodiscard]] GResult
{
public:
    static GResult Success() { return GResult(Kind::Succeeded, {}, 0); }

    // The reason is not empty.
    static GResult Failure(const GString& reason, int32_t code = 0)
    {
        return GResult(Kind::Failed, reason, code);
    }

    // Runs a step that raises, and gives a GResult or nothing; what it raised becomes the failure.
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

    // Both are empty, or 0, after a success; the code is 0 where nobody gave one.
    const GString& GetReason() const { return mReason; }
    int32_t GetCode() const { return mCode; }

    // Runs the next step, which gives a GResult, unless something has gone wrong before.
    template <typename Step>
    GResult Then(Step&& step) const
    {
        return HasSucceeded() ? std::forward<Step>(step)() : *this;
    }

    // The same result with its reason between two texts: what was tried, and then why not.
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
