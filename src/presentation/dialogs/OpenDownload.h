// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

class OperationErrors;
class UpdateManager;
class UrlOpener;

/// Opens the page of the available update with the desktop's browser, if there is an update. Only an address on the web
/// is opened, since the address comes from a server; a failure is shown to the user.
void openDownload(const UpdateManager &updateManager, UrlOpener &opener, OperationErrors &errors);

} // namespace quillhaven
