// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/RunTool.h"

#include "async/Answer.h"
#include "support/ChildSignals.h"
#include "support/LocalizedError.h"

#include <QProcess>

namespace quillhaven {

namespace {

class ToolError : public LocalizedError
{
public:
    explicit ToolError(const QString &description) : LocalizedError(description) {}
};

} // namespace

QCoro::Task<ToolEnd> runTool(QString program, QStringList arguments)
{
    QProcess process;
    process.setChildProcessModifier(resetSignalsInChild);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setStandardInputFile(QProcess::nullDevice());
    const Answer<bool> hasRun;
    QObject::connect(&process, &QProcess::finished, &process, [hasRun] { hasRun.give(true); });
    QObject::connect(&process, &QProcess::errorOccurred, &process, [hasRun](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            hasRun.give(false);
        }
    });
    process.start(program, arguments);
    if (!co_await hasRun) {
        throw ToolError(QStringLiteral("%1 cannot be started: %2").arg(program, process.errorString()));
    }
    const bool isNormal = process.exitStatus() == QProcess::NormalExit;
    ToolEnd end{isNormal ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput())};
    co_return end;
}

} // namespace quillhaven
