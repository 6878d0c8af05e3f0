// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// The content of a section, which exists once the section has been selected.
Item {
    id: content

    required property string name
    required property bool isSelected
    required property Component section
    property Item item: null

    Layout.fillWidth: true
    implicitHeight: item?.implicitHeight ?? 0
    visible: isSelected
    Accessible.role: Accessible.Grouping
    Accessible.name: name + " section"
    onIsSelectedChanged: load()
    Component.onCompleted: load()

    function load() {
        if (isSelected && !item)
            item = section.createObject(content, { width: Qt.binding(() => content.width) })
    }
}
