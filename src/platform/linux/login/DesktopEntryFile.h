// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

struct _GKeyFile;

namespace quillhaven {

/// The contents of a desktop entry file (Desktop Entry Specification 1.5), of which the group "Desktop Entry" is read
/// and changed. Everything else, such as comments, translations and other groups, stays as it was.
class DesktopEntryFile
{
public:
    /// An entry without keys.
    DesktopEntryFile();
    ~DesktopEntryFile();
    DesktopEntryFile(DesktopEntryFile &&) noexcept;
    DesktopEntryFile &operator=(DesktopEntryFile &&) noexcept;

    /// Reads the file at the path, through a link if it is one. Nothing if no file exists. Throws a FileError if it
    /// cannot be read, of the kind NotAFileOrFolder if it is no desktop entry.
    [[nodiscard]] static std::optional<DesktopEntryFile> read(const QString &path);

    [[nodiscard]] QStringList keys() const;
    [[nodiscard]] bool has(const char *key) const;
    /// Empty if the key is missing or invalid.
    [[nodiscard]] QString string(const char *key) const;
    [[nodiscard]] QStringList list(const char *key) const;
    [[nodiscard]] bool boolean(const char *key, bool otherwise) const;

    void setString(const char *key, const QString &value);
    void setList(const char *key, const QStringList &values);
    void setBoolean(const char *key, bool value);
    void remove(const char *key);

    [[nodiscard]] QByteArray bytes() const;
    /// Replaces the file at the path, which a crash leaves either as it was or complete; a link there is replaced, not
    /// followed. Makes the folder if it is missing. Throws a FileError, and the file is as it was.
    void write(const QString &path) const;

private:
    struct Free
    {
        void operator()(_GKeyFile *file) const;
    };

    std::unique_ptr<_GKeyFile, Free> m_file;
};

} // namespace quillhaven
