// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

struct wl_display;
struct org_kde_kwin_fake_input;

namespace quillhaven::test {

/// Input devices of a KWin that runs for a test. Each call returns after KWin has taken the input.
class KWinInput
{
public:
    KWinInput();
    ~KWinInput();
    KWinInput(const KWinInput &) = delete;
    KWinInput &operator=(const KWinInput &) = delete;

    void movePointer();
    void pressKey();

private:
    void finish();

    wl_display *m_display;
    org_kde_kwin_fake_input *m_input = nullptr;
};

} // namespace quillhaven::test
