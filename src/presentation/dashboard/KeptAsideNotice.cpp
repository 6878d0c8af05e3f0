// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/KeptAsideNotice.h"

#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/NoticesModel.h"
#include "support/Paths.h"

namespace quillhaven {

namespace {

const QString noticeId = QStringLiteral("kept-aside");

QString quoted(const QString &path)
{
    return QLatin1Char('"') + lastPathComponent(path) + QLatin1Char('"');
}

QString sentence(const QString &place, const QString &aside)
{
    return aside.isEmpty()
               ? QStringLiteral("A file named %1 was in the way and is in the trash now.").arg(quoted(place))
               : QStringLiteral("Something else was at the place of %1. It was kept there as %2.")
                     .arg(quoted(place), quoted(aside));
}

} // namespace

KeptAsideNotice::KeptAsideNotice(QuillhavenManager &quillhavenManager, NoticesModel &notices, QObject *parent)
    : QObject(parent), m_notices(notices)
{
    connect(&quillhavenManager, &QuillhavenManager::keptAside, this, &KeptAsideNotice::add);
}

void KeptAsideNotice::add(const QString &place, const QString &aside)
{
    m_count = m_notices.contains(noticeId) ? m_count + 1 : 1;
    const QString others =
        m_count > 1 ? QStringLiteral(" %1 more were kept before, each at its place.").arg(m_count - 1) : QString();
    m_notices.show({.id = noticeId, .text = sentence(place, aside) + others, .isDismissible = true});
}

} // namespace quillhaven
