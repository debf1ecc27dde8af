#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

// The arguments of a command, taken apart: options, which begin with "--" and stand anywhere, and the rest in
// its order. Behind a bare "--" everything is rest.
class Arguments
{
public:
    // `flags` are the options without a value, `valued` those whose value is the next argument; both without
    // the "--". An option with a value may be given several times.
    Arguments(const QStringList& arguments, const QStringList& flags, const QStringList& valued = {});

    // False when there is an option that the command doesn't know, or one without its value.
    bool AreValid() const { return mAreValid; }

    const QStringList& GetRest() const { return mRest; }
    bool Has(const char* option) const { return mOptions.contains(QLatin1String(option)); }
    QStringList GetAll(const char* option) const { return mOptions.value(QLatin1String(option)); }

    // The last value that was given; empty when there was none.
    QString Get(const char* option) const;

private:
    QMap<QString, QStringList> mOptions;
    QStringList mRest;
    bool mAreValid = true;
};

// A text KEY=VALUE in two; false when it has no key or no equal sign.
bool SplitAssignment(const QString& text, QString& key, QString& value);
