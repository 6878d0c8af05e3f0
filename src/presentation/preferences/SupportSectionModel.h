// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class SupportManager;

/// The ways to reach the people behind the program. Main thread only.
class SupportSectionModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")

public:
    /// The reference must outlive this object.
    explicit SupportSectionModel(SupportManager &supportManager, QObject *parent = nullptr)
        : QObject(parent), m_supportManager(supportManager)
    {
    }

    /// Whether "Report Issue" was pressed since the start of the program.
    [[nodiscard]] bool reportIssueButtonPressed() const { return m_reportIssueButtonPressed; }

    /// "Contact Support": a mail without details of the system.
    Q_INVOKABLE void contactSupport();
    /// "Report Issue": a mail with them.
    Q_INVOKABLE void reportIssue();
    /// "Feedback": the page on the product's site.
    Q_INVOKABLE void openFeedback();

private:
    SupportManager &m_supportManager;
    bool m_reportIssueButtonPressed = false;
};

} // namespace quillhaven
