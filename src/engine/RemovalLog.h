// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

namespace quillhaven {

class FileManager;

/// The log of one removal of protection, by event. A removal in a bulk run is silent.
class RemovalLog
{
public:
    enum class Lines { Silent, Printed };

    explicit RemovalLog(Lines lines) : m_isPrinted(lines == Lines::Printed) {}

    void requested(const ProtectedItem &item) const;
    void guardCancelled() const;
    void guardPassed(const ProtectedItem &item) const;
    void lookedAtOriginalPath(const ProtectedItem &item, bool exists) const;
    void foundInPlace() const;
    void searchesPrivateCopy(const FileManager &files, const ProtectedItem &item) const;
    void accessGranted(const QString &place, bool hasPrivateCopy) const;
    void privateCopyIsMissing(const FileManager &files, const QString &privateCopy) const;

    void restores(const QString &place) const;
    void replacesPlaceholder() const;
    void replaceFailed(const QString &description) const;
    void replaced(const QString &place) const;
    void moved(const QString &place) const;

    void removesContainer() const;
    void containerNotRemoved(const QString &description) const;
    void skipsCredentials() const;
    void removesCredentials(const QString &id) const;
    void credentialsNotRemoved(const QString &description) const;
    void credentialsRemoved() const;

    void endedInPlace() const;
    void endedWithRestoration() const;
    void failed(const QString &description) const;

private:
    void print(const QString &line) const;

    bool m_isPrinted;
};

} // namespace quillhaven
