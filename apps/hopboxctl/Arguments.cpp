#include "apps/hopboxctl/Arguments.h"

Arguments::Arguments(const QStringList& arguments, const QStringList& flags, const QStringList& valued)
{
    for (int at = 0; at < arguments.size(); ++at) {
        const QString& argument = arguments.at(at);
        if (argument == QLatin1String("--")) {
            mRest += arguments.mid(at + 1);
            return;
        }
        if (!argument.startsWith(QLatin1String("--"))) {
            mRest.append(argument);
            continue;
        }
        const QString name = argument.mid(2);
        if (flags.contains(name))
            mOptions[name];
        else if (valued.contains(name) && at + 1 < arguments.size())
            mOptions[name].append(arguments.at(++at));
        else
            mAreValid = false;
    }
}

QString Arguments::Get(const char* option) const
{
    const QStringList values = GetAll(option);
    return values.isEmpty() ? QString() : values.last();
}

bool SplitAssignment(const QString& text, QString& key, QString& value)
{
    const int at = text.indexOf(QLatin1Char('='));
    if (at <= 0)
        return false;
    key = text.left(at);
    value = text.mid(at + 1);
    return true;
}
