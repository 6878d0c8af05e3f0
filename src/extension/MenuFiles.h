// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "extension/ManagerMenus.h"

#include <QByteArray>
#include <QList>

namespace quillhaven {

/// A file that belongs to the program alone, in a folder that a file manager reads.
struct MenuFile
{
    QString path;
    QByteArray contents; ///< with `menuFileMark` in one of its first lines
    bool isExecutable = false;
};

/// By this text a file is known to be one of ours.
inline constexpr char menuFileMark[] = "com.tarnwick.quillhaven.FinderSync";

/// Menus that consist of such files.
class MenuFiles : public ManagerMenus
{
public:
    MenuFiles(QString name, QString program, Reads reads, QList<MenuFile> files)
        : ManagerMenus(std::move(name), std::move(program), reads), m_files(std::move(files))
    {
    }

    [[nodiscard]] bool isCurrent() const override;
    [[nodiscard]] std::optional<QString> install() const override;
    [[nodiscard]] std::optional<QString> remove() const override;

private:
    QList<MenuFile> m_files;
};

} // namespace quillhaven
