// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/EngineHarness.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace quillhaven::testing {

/// One item below a home, and the engine that works on it.
struct OperationScene
{
    EngineHarness &engine;
    QString home;

    [[nodiscard]] QString place() const { return home + QStringLiteral("/Desktop/item"); }
    [[nodiscard]] QString recoveryFolder() const { return home + QStringLiteral("/Recovered"); }
    /// The user's answer to a panel: what was asked for, and the folder for what is recovered.
    [[nodiscard]] static std::optional<QString> answer(const QString &home, const OpenPanelRequest &request);
};

/// The data of the item: whole blocks, as a disk has them.
[[nodiscard]] const QByteArray &itemBytes();
/// Makes the item of a scene: a file, or a folder with the bytes in one of its files, with whatever the system keeps of
/// items besides their bytes. An older container of its name exists already.
void makeItem(const QString &home, bool isFolder);
/// How many files below a folder hold the bytes.
[[nodiscard]] int wholeCopiesBelow(const QString &folder);

inline const QString operationMasterPassword = QStringLiteral("Masterkey9");

/// An operation of the engine on the item of a scene.
struct Operation
{
    QString name;
    /// Brings about what the operation needs.
    std::function<void(const OperationScene &)> prepare;
    /// Throws what the engine throws.
    std::function<void(const OperationScene &)> perform;
    /// Whether nothing is left to be done. What a stopped run cannot be continued from counts as done.
    std::function<bool(const OperationScene &)> isDone;
    bool destroysData = false;
    bool worksOnFolders = true; ///< a folder has no password that its duplicate could take over
};

[[nodiscard]] const std::vector<Operation> &allOperations();
/// Throws for a name that no operation has.
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

/// Every operation on everything that it works on.
[[nodiscard]] std::vector<OperationCase> everyOperationCase();

} // namespace quillhaven::testing
