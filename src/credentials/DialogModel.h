// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

#include <functional>
#include <type_traits>

namespace quillhaven {

/// How a question ended. `Replaced` means that another caller asked a question before this one was answered: the caller
/// of this one then stops, and must not do what it does for `Cancelled`.
enum class DialogEnd { Confirmed, Cancelled, Replaced };

/// The model of a dialog. It holds one pending question at a time; the next caller replaces its texts and actions. Main
/// thread only.
///
/// A derived class must name this base class with its namespace, or the generator of the QML types does not find it.
class DialogModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented WRITE setIsPresented NOTIFY isPresentedChanged)

public:
    using QObject::QObject;

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    void setIsPresented(bool value);

Q_SIGNALS:
    void isPresentedChanged();
    /// A question was asked, and the dialog is about to show it. Also emitted when it replaces one in the open dialog.
    void asked();

protected:
    /// Stores a value, and emits `changed` if it is different.
    template <typename Value, typename Model>
    void assign(Value &field, const std::type_identity_t<Value> &value, void (Model::*changed)())
    {
        if (field != value) {
            field = value;
            Q_EMIT(static_cast<Model *>(this)->*changed)();
        }
    }

    /// Closes the dialog, then calls the action if there is one. The action is a copy of the stored one, so that it can
    /// ask the next question in this dialog without destroying itself.
    template <typename... Parameters, typename... Arguments>
    void closeThen(std::function<void(Parameters...)> action, const Arguments &...arguments)
    {
        setIsPresented(false);
        if (action) {
            action(arguments...);
        }
    }

private:
    bool m_isPresented = false;
};

} // namespace quillhaven
