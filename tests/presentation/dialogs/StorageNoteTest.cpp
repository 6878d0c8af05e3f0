// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/StorageNote.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace quillhaven;

namespace {

struct Clause
{
    bool StorageFacts::*fact;
    QString words;
};

const Clause clauses[] = {
    {&StorageFacts::isSolidState, QStringLiteral("in parts of the solid-state disk that no program can reach")},
    {&StorageFacts::isCopyOnWrite, QStringLiteral("in free space that the file system does not overwrite")},
    {&StorageFacts::sharesBlocks, QStringLiteral("in copies of the files that share their space")},
    {&StorageFacts::hasSnapshots, QStringLiteral("in snapshots of the disk")},
    {&StorageFacts::isRemote, QStringLiteral("on the server or in the program that stores it")},
    {&StorageFacts::isSynced, QStringLiteral("wherever the folder is synchronized to")},
};

/// The facts that the bits of the number stand for; the highest one is for the lack of encryption.
StorageFacts factsOf(unsigned bits)
{
    StorageFacts facts;
    for (const Clause &clause : clauses) {
        facts.*clause.fact = (bits & 1) != 0;
        bits >>= 1;
    }
    facts.isUnencrypted = bits != 0;
    return facts;
}

/// What protects, by the kinds of places.
QString adviceFor(bool isHidden, bool isDeletable, bool isElsewhere, bool isUnencrypted)
{
    if (!isHidden && !isDeletable) {
        return QStringLiteral("Encrypting the disk of this computer does not protect against that.");
    }
    if (isElsewhere) {
        return isUnencrypted ? QStringLiteral("Encrypting the whole disk protects only what is on this computer.")
                             : QStringLiteral("The disk's encryption protects only what is on this computer.");
    }
    if (isHidden) {
        return isUnencrypted ? QStringLiteral("Only encrypting the whole disk protects against that.")
                             : QStringLiteral("The disk's encryption protects it while the disk is locked.");
    }
    return isUnencrypted ? QStringLiteral("Delete those too, or encrypt the whole disk.")
                         : QStringLiteral("Delete those too.");
}

} // namespace

TEST(StorageNote, NothingIsSaidWhenNothingIsKnown)
{
    EXPECT_EQ(storageNote({}), QString());
    EXPECT_EQ(storageNote({.isUnencrypted = true}), QString());
}

TEST(StorageNote, TheWholeSentenceOfCommonDisks)
{
    EXPECT_EQ(
        storageNote({.isSolidState = true, .isUnencrypted = true}),
        QStringLiteral("Even so, the data may survive in parts of the solid-state disk that no program can reach. "
                       "Only encrypting the whole disk protects against that."));
    EXPECT_EQ(
        storageNote({.isSolidState = true}),
        QStringLiteral("Even so, the data may survive in parts of the solid-state disk that no program can reach. "
                       "The disk's encryption protects it while the disk is locked."));
    EXPECT_EQ(
        storageNote({.isCopyOnWrite = true, .hasSnapshots = true, .isUnencrypted = true}),
        QStringLiteral("Even so, the data may survive in free space that the file system does not overwrite and in "
                       "snapshots of the disk. Only encrypting the whole disk protects against that."));
    EXPECT_EQ(storageNote({.isSolidState = true, .isRemote = true, .isSynced = true, .isUnencrypted = true}),
              QStringLiteral(
                  "Even so, the data may survive in parts of the solid-state disk that no program can reach, on the "
                  "server or in the program that stores it and wherever the folder is synchronized to. "
                  "Encrypting the whole disk protects only what is on this computer."));
}

TEST(StorageNote, EachCombinationNamesItsPlacesInOrderAndWhatProtects)
{
    for (unsigned bits = 1; bits < 128; ++bits) {
        const StorageFacts facts = factsOf(bits);
        if (!facts.isAnythingKnown()) {
            continue;
        }
        const QString note = storageNote(facts);
        ASSERT_TRUE(note.startsWith(QStringLiteral("Even so, the data may survive "))) << bits;
        qsizetype last = 0;
        for (const Clause &clause : clauses) {
            const qsizetype place = note.indexOf(clause.words);
            EXPECT_EQ(place >= 0, facts.*clause.fact) << qUtf8Printable(note);
            EXPECT_TRUE(place < 0 || place > last) << qUtf8Printable(note);
            last = std::max(last, place);
        }
        const QString advice =
            adviceFor(facts.isSolidState || facts.isCopyOnWrite, facts.sharesBlocks || facts.hasSnapshots,
                      facts.isRemote || facts.isSynced, facts.isUnencrypted);
        EXPECT_TRUE(note.endsWith(QStringLiteral(". ") + advice)) << qUtf8Printable(note);
        EXPECT_EQ(note.count(QStringLiteral(". ")), 1) << qUtf8Printable(note);
    }
}
