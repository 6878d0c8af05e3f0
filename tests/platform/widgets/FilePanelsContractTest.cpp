// SPDX-License-Identifier: GPL-3.0-or-later

#include "contract/FilePanelsContract.h"
#include "PanelUser.h"
#include "platform/widgets/AccessPanelDialog.h"
#include "platform/widgets/QtFilePanels.h"
#include "support/FakeFilePanels.h"

#include <QListWidget>
#include <QPointer>
#include <QTimer>

#include <functional>

namespace quillhaven::test {
namespace {

/// Waits for the next panel on the screen, and answers it with key presses and clicks.
class UserOfRealPanels
{
public:
    UserOfRealPanels()
    {
        QObject::connect(&m_look, &QTimer::timeout, [this] { actOnThePanel(); });
    }

    ~UserOfRealPanels()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            widget->close();
        }
        spinOnce();
    }
    UserOfRealPanels(const UserOfRealPanels &) = delete;
    UserOfRealPanels &operator=(const UserOfRealPanels &) = delete;

    [[nodiscard]] FilePanels &panels() { return m_panels; }

    void chooses(const QStringList &names)
    {
        next([this, names](QDialog &) {
            if (names.size() == 1) {
                m_user.type(names.constFirst());
                m_user.key(Qt::Key_Return);
                return;
            }
            m_user.click(names.constFirst());
            for (const QString &name : names.mid(1)) {
                m_user.click(name, Qt::ControlModifier);
            }
            m_user.clickConfirm();
        });
    }
    void confirms()
    {
        next([](QDialog &panel) { QTest::keyClick(panel.windowHandle(), Qt::Key_Return); });
    }
    void choosesInstead(const QString &path)
    {
        next([this, path](QDialog &panel) {
            const QList<QPushButton *> buttons = panel.findChildren<QPushButton *>();
            const auto choose = std::ranges::find(buttons, QStringLiteral("Choose…"), &QPushButton::text);
            QTest::mouseClick(*choose, Qt::LeftButton);
            next([path](QDialog &) {
                QTest::keyClicks(QApplication::focusWidget(), path);
                QTest::keyClick(QApplication::activeWindow()->windowHandle(), Qt::Key_Return);
            });
        });
    }
    void unticks(const QStringList &paths)
    {
        next([paths](QDialog &panel) {
            auto *list = panel.findChild<QListWidget *>();
            for (int row = 0; row < list->count(); ++row) {
                if (paths.contains(list->item(row)->text())) {
                    list->setCurrentRow(row);
                    QTest::keyClick(list, Qt::Key_Space);
                }
            }
            QTest::keyClick(panel.windowHandle(), Qt::Key_Return);
        });
    }
    void declines()
    {
        next([](QDialog &panel) { QTest::keyClick(panel.windowHandle(), Qt::Key_Escape); });
    }

private:
    void next(std::function<void(QDialog &panel)> act)
    {
        m_act = std::move(act);
        m_look.start(5);
    }
    void actOnThePanel()
    {
        m_user.panel = PanelUser::onScreen<OpenPanelDialog>();
        auto *panel = qobject_cast<QDialog *>(QApplication::activeWindow());
        if (panel && panel != m_acted && QApplication::focusWidget()) {
            m_look.stop();
            m_acted = panel;
            std::exchange(m_act, nullptr)(*panel);
        }
    }

    QtFilePanels m_panels;
    PanelUser m_user;
    QTimer m_look;
    QPointer<QDialog> m_acted; ///< not yet answered a second time
    std::function<void(QDialog &panel)> m_act;
};

class UserOfFakePanels
{
public:
    [[nodiscard]] FilePanels &panels() { return m_panels; }

    void chooses(const QStringList &names)
    {
        const auto paths = [names](const OpenPanelRequest &request) {
            QStringList chosen;
            for (const QString &name : names) {
                chosen.append(request.directory + QLatin1Char('/') + name);
            }
            return chosen;
        };
        m_panels.answer = [paths](const OpenPanelRequest &request) {
            return std::optional(paths(request).constFirst());
        };
        m_panels.answerSeveral = [paths](const OpenPanelRequest &request) { return std::optional(paths(request)); };
    }
    void confirms()
    {
        m_panels.confirm = nullptr;
        m_panels.grant = nullptr;
    }
    void choosesInstead(const QString &path)
    {
        m_panels.confirm = [path](const PlaceRequest &) { return std::optional(path); };
    }
    void unticks(const QStringList &paths)
    {
        m_panels.grant = [paths](const AccessRequest &request) {
            QStringList ticked = request.paths;
            ticked.removeIf([&](const QString &path) { return paths.contains(path); });
            return std::optional(ticked);
        };
    }
    void declines()
    {
        m_panels.answer = [](const OpenPanelRequest &) { return std::nullopt; };
        m_panels.answerSeveral = [](const OpenPanelRequest &) { return std::nullopt; };
        m_panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
        m_panels.grant = [](const AccessRequest &) { return std::nullopt; };
    }

private:
    FakeFilePanels m_panels;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, FilePanelsContract, UserOfRealPanels);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FilePanelsContract, UserOfFakePanels);

} // namespace
} // namespace quillhaven::test
