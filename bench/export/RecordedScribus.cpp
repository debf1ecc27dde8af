#include "RecordedScribus.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

// The file that a request, the last argument of a start, names under a key.
static QString GetFile(const QStringList& arguments, const char* key)
{
    const QJsonDocument request = QJsonDocument::fromJson(arguments.constLast().toUtf8());
    return request.object().value(QLatin1String(key)).toString();
}

RecordedScribus::RecordedScribus()
{
    QFile script(mFolder.filePath(QStringLiteral("scribus")));
    script.open(QIODevice::WriteOnly);
    script.write(QStringLiteral("#!/bin/sh\n"
                                "env -0 > '%1/environment'\n"
                                "printf '%s\\0' \"$@\" > '%1/arguments'\n"
                                "for request; do :; done\n"
                                "document=${request#*\\\"document\\\":\\\"}\n"
                                "cp \"${document%%\\\"*}\" '%1/document' 2> /dev/null\n"
                                "exec /usr/bin/scribus \"$@\"\n")
                     .arg(mFolder.path())
                     .toUtf8());
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

ScribusSetup RecordedScribus::GetSetup() const
{
    ScribusSetup setup;
    setup.scribus = mFolder.filePath(QStringLiteral("scribus"));
    return setup;
}

bool RecordedScribus::Repeat() const
{
    QProcessEnvironment environment;
    for (const QString& variable : Read("environment"))
        environment.insert(variable.section(QLatin1Char('='), 0, 0), variable.section(QLatin1Char('='), 1));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    const QStringList arguments = Read("arguments");
    const QString output = GetFile(arguments, "output");
    QFile::remove(output);
    // An export may have given Scribus a copy of the document that went with it.
    const QString document = GetFile(arguments, "document");
    QDir().mkpath(QFileInfo(document).path());
    QFile::copy(mFolder.filePath(QStringLiteral("document")), document);
    process.start(QStringLiteral("/usr/bin/scribus"), arguments);
    return process.waitForFinished(-1) && QFile(output).size() > 0;
}

QString RecordedScribus::MakeDocument(const QString& script, const QString& path)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QStringLiteral("/usr/bin/scribus"),
                  {QStringLiteral("-g"), QStringLiteral("-ns"), QStringLiteral("-py"), script, path});
    process.waitForFinished(-1);
    return path;
}

QStringList RecordedScribus::Read(const char* name) const
{
    QFile file(mFolder.filePath(QString::fromLatin1(name)));
    file.open(QIODevice::ReadOnly);
    QStringList texts;
    for (const QByteArray& text : file.readAll().split('\0'))
        texts.append(QString::fromUtf8(text));
    texts.removeLast();  // behind the last end
    return texts;
}
