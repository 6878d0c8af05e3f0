// SPDX-License-Identifier: GPL-3.0-or-later

// A backup from a synced folder may hold any bytes. The seeds are sealed under the password below.

#include "FuzzInput.h"
#include "formats/RecoveryBackup.h"
#include "platform/linux/files/LinuxFileManager.h"
#include "support/FileManagerDecorator.h"

#include <algorithm>

using namespace quillhaven;

namespace {

class InputReader : public FileReader
{
public:
    explicit InputReader(std::span<const std::byte> input) : m_input(input) {}
    [[nodiscard]] size_t size() const override { return m_input.size(); }
    [[nodiscard]] size_t read(uint64_t offset, std::span<std::byte> bytes) override
    {
        const auto piece = m_input.subspan(offset, std::min(bytes.size(), m_input.size() - offset));
        std::ranges::copy(piece, bytes.begin());
        return piece.size();
    }

private:
    std::span<const std::byte> m_input;
};

class OneFile : public FileManagerDecorator
{
public:
    OneFile(FileManager &next, const uint8_t *data, size_t size)
        : FileManagerDecorator(next), m_data(data), m_size(size)
    {
    }
    [[nodiscard]] std::unique_ptr<FileReader> openForReading(const QString &) const override
    {
        return std::make_unique<InputReader>(std::as_bytes(std::span(m_data, m_size)));
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
