// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

/// Whether a descriptor of this process is its stream to the session's journal, which keeps what it gets on the disk.
/// See JOURNAL_STREAM in systemd.exec(5).
[[nodiscard]] bool isJournalStream(int descriptor);

} // namespace quillhaven
