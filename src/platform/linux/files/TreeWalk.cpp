// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/TreeWalk.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/FolderDescent.h"
#include "platform/linux/files/FolderEntries.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

namespace quillhaven {

namespace {

class Walk
{
public:
    Walk(const QByteArray &path, FileError::Action action, TreeVisitor &visitor)
        : m_path(path),
          m_action(action),
          m_visitor(visitor),
          m_descent(ScopedFd(open(parentOf(path).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC)))
    {
        if (m_descent.folder() < 0) {
            fail(errno);
        }
    }

    void run()
    {
        visit(nameOf(m_path));
        while (!m_folders.empty()) {
            Folder &folder = m_folders.back();
            if (folder.next < folder.names.size()) {
                const QByteArray name = folder.names.at(folder.next++);
                m_path += '/' + name;
                visit(name);
            } else {
                leave();
            }
        }
    }

private:
    struct Folder
    {
        QByteArray name;
        std::vector<QByteArray> names;
        size_t next = 0;
    };

    [[noreturn]] void fail(int error) const { throw FileError::fromErrno(error, m_action, decodedPath(m_path)); }

    [[nodiscard]] TreeEntry entry(const QByteArray &name) const { return {m_descent.folder(), name, m_path}; }

    /// `m_path` is that of the entry; it stays so for a folder that is entered.
    void visit(const QByteArray &name)
    {
        if (m_visitor.visit(entry(name))) {
            enter(name);
        } else {
            m_path.chop(name.size() + 1);
        }
    }

    void enter(const QByteArray &name)
    {
        ScopedFd fd = openWithoutAccessTime(m_descent.folder(), name, O_DIRECTORY);
        Folder folder{name, {}};
        if (!fd.isOpen() || !readEntries(fd.get(), folder.names)) {
            fail(errno);
        }
        m_visitor.entered(entry(name), fd.get(), folder.names);
        if (!m_descent.enter(std::move(fd))) {
            fail(errno);
        }
        m_folders.push_back(std::move(folder));
    }

    void leave()
    {
        const QByteArray name = std::move(m_folders.back().name);
        m_folders.pop_back();
        if (!m_descent.leave()) {
            fail(errno);
        }
        m_visitor.left(entry(name));
        m_path.chop(name.size() + 1);
    }

    QByteArray m_path;
    FileError::Action m_action;
    TreeVisitor &m_visitor;
    FolderDescent m_descent;
    std::vector<Folder> m_folders;
};

} // namespace

void walkTree(const QByteArray &path, FileError::Action action, TreeVisitor &visitor)
{
    Walk(path, action, visitor).run();
}

} // namespace quillhaven
