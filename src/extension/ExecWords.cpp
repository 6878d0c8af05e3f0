// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/ExecWords.h"

namespace quillhaven {

QByteArray execWord(const QByteArray &text)
{
    QByteArray word;
    for (const char character : text) {
        if (character == '"' || character == '`' || character == '$' || character == '\\') {
            word += '\\';
        }
        word += character == '%' ? QByteArrayLiteral("%%") : QByteArray(1, character);
    }
    return '"' + word + '"';
}

QByteArray keyFileValue(QByteArray text)
{
    return text.replace('\\', "\\\\").replace('\n', "\\n").replace('\t', "\\t").replace('\r', "\\r");
}

QByteArray pythonBytes(const QByteArray &bytes)
{
    QByteArray literal;
    for (const char byte : bytes) {
        const bool isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                             (byte >= '0' && byte <= '9') || byte == '/' || byte == '-' || byte == '_' || byte == '.';
        literal += isPlain ? QByteArray(1, byte) : "\\x" + QByteArray(1, byte).toHex();
    }
    return literal;
}

} // namespace quillhaven
