#include "hosts/scribus/runner/AnswerCache.h"
#include "tests/support/Test.h"

#include <QCryptographicHash>
#include <QDateTime>

class AnswerCacheTest : public testing::Test
{
protected:
    QStringList GetFiles() const
    {
        return QDir(mSandbox.GetPath("answers"_q)).entryList(QDir::Files, QDir::Name);
    }

    Sandbox mSandbox;
    AnswerCache mCache{mSandbox.GetPath("answers"_q)};
};

TEST_F(AnswerCacheTest, AnAnswerHoldsUnderItsConditionOnly)
{
    EXPECT_TRUE(mCache.Find("a", "1").isNull());
    mCache.Keep("a", "1", "first");
    mCache.Keep("b", "1", "other");
    EXPECT_EQ(mCache.Find("a", "1"), "first");
    EXPECT_EQ(AnswerCache(mSandbox.GetPath("answers"_q)).Find("b", "1"), "other");
    EXPECT_TRUE(mCache.Find("a", "2").isNull());
    EXPECT_TRUE(mCache.Find("a1", "").isNull());
    mCache.Keep("a", "2", "second");
    EXPECT_EQ(mCache.Find("a", "2"), "second");
    EXPECT_TRUE(mCache.Find("a", "1").isNull());
}

TEST_F(AnswerCacheTest, EachDamageIsAsGoodAsNoFile)
{
    mCache.Keep("a", "1", QByteArray(1000, 'x'));
    ASSERT_EQ(GetFiles().size(), 1);
    const QString path = mSandbox.GetPath("answers/"_q + GetFiles().constFirst());
    const QByteArray whole = ReadFile(path);
    for (int i = 0; i < whole.size(); ++i) {
        QByteArray damaged = whole;
        damaged[i] = static_cast<char>(damaged[i] ^ 1);
        WriteFile(path, i % 2 == 0 ? damaged : whole.left(i));
        EXPECT_TRUE(mCache.Find("a", "1").isNull()) << i;
    }
    WriteFile(path, whole + "x");
    EXPECT_TRUE(mCache.Find("a", "1").isNull());
    mCache.Keep("a", "1", "again");
    EXPECT_EQ(mCache.Find("a", "1"), "again");
}

TEST_F(AnswerCacheTest, WhatWasNotLookedForLongestGoesFirst)
{
    const auto makeKey = [](int i) { return "key " + QByteArray::number(i); };
    for (int i = 0; i < AnswerCache::cMostFiles; ++i)
        mCache.Keep(makeKey(i), "1", "answer");
    const QDateTime longAgo = QDateTime::currentDateTimeUtc().addDays(-1);
    for (const QString& name : GetFiles()) {
        QFile file(mSandbox.GetPath("answers/"_q + name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite) &&
                    file.setFileTime(longAgo, QFileDevice::FileModificationTime));
    }
    EXPECT_EQ(mCache.Find(makeKey(3), "1"), "answer");
    for (int i = 0; i < 20; ++i)
        mCache.Keep("new " + makeKey(i), "1", "answer");
    EXPECT_EQ(GetFiles().size(), AnswerCache::cMostFiles);
    EXPECT_EQ(mCache.Find(makeKey(3), "1"), "answer");

    QByteArray noise;  // that packing makes no smaller
    while (noise.size() < AnswerCache::cLargestFile - 1000)
        noise += QCryptographicHash::hash(noise.right(64), QCryptographicHash::Sha512);
    for (int i = 0; i < 9; ++i)
        mCache.Keep(makeKey(i), "1", noise);
    qint64 bytes = 0;
    for (const QString& name : GetFiles())
        bytes += QFileInfo(mSandbox.GetPath("answers/"_q + name)).size();
    EXPECT_LE(bytes, AnswerCache::cMostBytes);
    mCache.Keep("large", "1", noise + noise);
    EXPECT_TRUE(mCache.Find("large", "1").isNull());
}
