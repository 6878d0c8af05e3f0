// SPDX-License-Identifier: GPL-3.0-or-later

import Quillhaven.Controls
import Quillhaven.Dashboard

/// A button of a row. Each use of it is logged.
IconButton {
    id: button

    required property RowActions actions

    onClicked: actions.logButton(helpText)
}
