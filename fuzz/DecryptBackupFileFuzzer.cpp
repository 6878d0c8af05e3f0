// SPDX-License-Identifier: GPL-3.0-or-later

// A backup from a synced folder may hold any bytes. The seeds are sealed under the password below.

#include "FuzzInput.h"
#include "formats/RecoveryBackup.h"
#include "platform/linux/files/LinuxFileManager.h"
#include "support/FileManagerDecorator.h"

using namespace quillhaven;

namespace {

class OneFile : public FileManagerDecorator
{
public:
    OneFile(FileManager &next, const uint8_t *data, size_t size)
        : FileManagerDecorator(next), m_data(data), m_size(size)
    {
    }
    using FileManager::readFile;
    [[nodiscard]] FileBuffer readFile(const QString &, size_t, size_t, ReadListener &) const override
    {
        return fuzz::bufferOf(m_data, m_size);
    }

private:
    const uint8_t *m_data;
    size_t m_size;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::silenceLog();
    LinuxFileManager real;
    const OneFile files(real, data, size);
    const QByteArray input = fuzz::bytesOf(data, size);
    try {
        const OwnedBytes plain = decryptBackupFile(files, QStringLiteral("/any.backup"), QStringLiteral("Masterkey9"));
        if (!input.startsWith("RECOVERY") || size <= 8) {
            fuzz::require(std::ranges::equal(plain.bytes, std::as_bytes(std::span(data, size))));
        } else {
            fuzz::require(plain.bytes.size() + 72 <= size);
        }
    } catch (const LocalizedError &error) {
        fuzz::require(!error.errorDescription().isEmpty());
        fuzz::require(input.startsWith("RECOVERY") || input.startsWith("QUILLHAVEN"));
    }
    return 0;
}
