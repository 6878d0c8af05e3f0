// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/EngineHarness.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace quillhaven::test {

/// An item in a home, and the engine that works on it.
struct OperationScene
{
    EngineHarness &engine;
    QString home;

    [[nodiscard]] QString place() const { return home + QStringLiteral("/Desktop/item"); }
    [[nodiscard]] QString recoveryFolder() const { return home + QStringLiteral("/Recovered"); }
    /// The user's answer to a panel: the requested item, or the folder for recovered files.
    [[nodiscard]] static std::optional<QString> answer(const QString &home, const OpenPanelRequest &request);
};

/// The data of the item: a whole number of disk blocks.
[[nodiscard]] const QByteArray &itemBytes();
/// Creates the item of a scene: a file, or a folder with the bytes in one of its files, with extended attributes and an
/// access list.
void makeItem(const QString &home, bool isFolder);
/// The number of files below a folder that contain the bytes.
[[nodiscard]] int wholeCopiesBelow(const QString &folder);

inline const QString operationMasterPassword = QStringLiteral("Masterkey9");

/// An operation of the engine on the item of a scene.
struct Operation
{
    QString name;
    /// Creates the state that the operation needs.
    std::function<void(const OperationScene &)> prepare;
    /// Throws the engine's exceptions.
    std::function<void(const OperationScene &)> perform;
    /// Whether nothing remains to be done. Also true if an interrupted run cannot be continued.
    std::function<bool(const OperationScene &)> isDone;
    bool destroysData = false;
    bool worksOnFolders = true; ///< a folder has no password to copy to its duplicate
};

[[nodiscard]] const std::vector<Operation> &allOperations();
/// Throws if no operation has this name.
[[nodiscard]] const Operation &operationNamed(const QString &name);

/// An operation on a file or on a folder, with private storage on the same file system or on another one.
struct OperationCase
{
    QString operation;
    bool isFolder = false;
    bool isAcross = false;

    [[nodiscard]] std::string name() const;
};

inline void PrintTo(const OperationCase &subject, std::ostream *out)
{
    *out << subject.name();
}

/// All operations on all kinds of items that they support.
[[nodiscard]] std::vector<OperationCase> everyOperationCase();

} // namespace quillhaven::test
