// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Utf8.h"

#include <QStringDecoder>

namespace quillhaven {

std::optional<QString> decodedUtf8(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return text;
}

} // namespace quillhaven
