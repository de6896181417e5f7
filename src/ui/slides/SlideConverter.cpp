#include "ui/slides/SlideConverter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

using namespace Qt::StringLiterals;

SlideConverter::~SlideConverter()
{
    stop();
}

QString SlideConverter::program()
{
    return QStandardPaths::findExecutable(u"soffice"_s);
}

QString SlideConverter::outputPath(const QString &source, const QString &folder)
{
    return QDir(folder).filePath(QFileInfo(source).completeBaseName() + u".pdf"_s);
}

void SlideConverter::convert(const QString &source, const QString &folder,
                             std::function<void(const std::optional<QString> &pdf)> done)
{
    stop();
    QDir().mkpath(folder);
    const QString output = outputPath(source, folder);
    // An older PDF of the same name must not pass for this conversion's result.
    QFile::remove(output);

    const QString profile = QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + u"/libreoffice"_s;
    auto *process = new QProcess(&context_);
    process_ = process;
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setProgram(program());
    process->setArguments({u"-env:UserInstallation="_s + QUrl::fromLocalFile(profile).toString(), u"--headless"_s,
                           u"--norestore"_s, u"--convert-to"_s, u"pdf"_s, u"--outdir"_s, folder, source});

    auto *limit = new QTimer(process);
    limit->setSingleShot(true);
    QObject::connect(limit, &QTimer::timeout, process, &QProcess::kill);
    const auto finish = [process, output, done = std::move(done)] {
        const auto report = done;  // outlives the connections dropped below
        process->disconnect();
        process->deleteLater();
        report(QFileInfo(output).isFile() ? std::optional(output) : std::nullopt);
    };
    QObject::connect(process, &QProcess::finished, process, finish);
    QObject::connect(process, &QProcess::errorOccurred, process, [process, finish](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish();
    });
    limit->start(timeLimit);
    process->start();
}

void SlideConverter::stop()
{
    if (!process_)
        return;
    QProcess *process = process_;
    process_ = nullptr;
    process->disconnect();
    // Reaped when it has gone, without waiting here.
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    process->kill();
}
