// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

class NoticesModel;
class QuillhavenManager;

/// Shows above the list what is wrong with the settings that hold the catalogue, now and after each later change, with
/// a button that tries again. The notices must outlive the engine's changes.
void showSettingsProblem(QuillhavenManager &engine, NoticesModel &notices);

} // namespace quillhaven
