// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

/// A deleter for std::unique_ptr that calls a function of a C library: `std::unique_ptr<FILE, Calls<fclose>>`.
template <auto function>
struct Calls
{
    template <typename Object>
    void operator()(Object *object) const
    {
        function(object);
    }
};

} // namespace quillhaven
