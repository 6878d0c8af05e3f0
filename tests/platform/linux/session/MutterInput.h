// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QString>
#include <QVariantList>

namespace quillhaven::test {

/// Input devices of a Mutter that runs for a test. Each call returns after Mutter has taken the input.
class MutterInput
{
public:
    MutterInput();
    ~MutterInput();
    MutterInput(const MutterInput &) = delete;
    MutterInput &operator=(const MutterInput &) = delete;

    void movePointer();
    void pressKey();

private:
    /// Returns the first argument of the reply. Throws the error of the call.
    QVariant call(const QString &path, const QString &interface, const QString &method,
                  const QVariantList &arguments = {});
    void callSession(const QString &method, const QVariantList &arguments = {});

    QDBusConnection m_bus;
    QString m_session;
};

} // namespace quillhaven::test
