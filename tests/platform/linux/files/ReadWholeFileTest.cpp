// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ReadWholeFile.h"
#include "FileFixture.h"

#include <algorithm>
#include <limits>
#include <string>

namespace quillhaven::test {

namespace {

using Kind = FileError::Kind;

class ReadWholeFile : public FileTest
{
protected:
    FileBuffer readAll(const QString &path, size_t headroom, size_t tailroom) const
    {
        return readWholeFile(*files.openForReading(path), path, headroom, tailroom);
    }
};

QByteArray contentOf(FileBuffer &buffer, size_t headroom, size_t tailroom)
{
    const auto bytes = buffer.bytes().subspan(headroom, buffer.size() - headroom - tailroom);
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size()));
}

TEST_F(ReadWholeFile, PutsTheFileAfterTheHeadroomAndLeavesTheRestZero)
{
    const QByteArray content = QByteArray("0123456789abcdef").repeated(200'000);
    const QString file = home.write(QStringLiteral("file"), content);
    FileBuffer buffer = readAll(file, 40, 16);
    ASSERT_EQ(buffer.size(), static_cast<size_t>(content.size()) + 56);
    EXPECT_TRUE(contentOf(buffer, 40, 16) == content);
    EXPECT_EQ(buffer.bytes()[0], std::byte{0});
    EXPECT_EQ(buffer.bytes()[buffer.size() - 1], std::byte{0});
    EXPECT_EQ(readAll(home.write(QStringLiteral("empty"), ""), 0, 0).size(), 0U);
}

TEST_F(ReadWholeFile, AFileWithAWrongSizeIsAnError)
{
    // The kernel reports a size of 0 bytes for this file, which has more, like a file that grows without end.
    const std::optional<FileError> error = errorOf([&] { (void)readAll(QStringLiteral("/proc/self/status"), 4, 4); });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->kind(), Kind::Other);
}

/// A file that something appends to whenever it is read.
class EndlessLog : public FileReader
{
public:
    [[nodiscard]] size_t size() const override { return m_content.size(); }
    [[nodiscard]] size_t read(uint64_t offset, std::span<std::byte> bytes) override
    {
        m_content += "one more line\n";
        const std::string_view rest = std::string_view(m_content).substr(offset, bytes.size());
        std::ranges::copy(std::as_bytes(std::span(rest)), bytes.begin());
        return rest.size();
    }

private:
    std::string m_content = "first line\n";
};

TEST_F(ReadWholeFile, AFileThatKeepsGrowingIsReadAsItWasWhenTheLastPassBegan)
{
    EndlessLog log;
    FileBuffer buffer = readWholeFile(log, QStringLiteral("/log"), 40, 16);
    const QByteArray content = contentOf(buffer, 40, 16);
    EXPECT_TRUE(content.startsWith("first line\none more line\n")) << content.toStdString();
    EXPECT_TRUE(content.endsWith("one more line\n"));
    EXPECT_LT(static_cast<size_t>(content.size()), log.size());
}

TEST_F(ReadWholeFile, AReadThatDoesNotFitInMemoryIsNotStarted)
{
    const QString small = home.write(QStringLiteral("small"));
    expectKind(Kind::TooLargeForMemory, [&] { (void)readAll(small, std::numeric_limits<size_t>::max() - 3, 3); });
}

} // namespace

} // namespace quillhaven::test
