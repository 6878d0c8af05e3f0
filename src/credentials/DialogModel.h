// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

#include <functional>
#include <type_traits>

namespace quillhaven {

/// How a question ended. One whose actions another caller replaced ends without an answer: its caller then stops, and
/// must not do what a cancel does.
enum class DialogEnd { Confirmed, Cancelled, Replaced };

/// The model of a dialog: one pending question at a time, whose texts and actions the next caller replaces. Main thread
/// only.
///
/// A class derived from this one names its base with the namespace: the generator of the QML types knows no other name.
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
    /// A question is put, and the dialog is about to show it. Also for one that replaces another in the open dialog.
    void asked();

protected:
    /// Stores a value, and reports it with `changed` when it is another one.
    template <typename Value, typename Model>
    void assign(Value &field, const std::type_identity_t<Value> &value, void (Model::*changed)())
    {
        if (field != value) {
            field = value;
            Q_EMIT(static_cast<Model *>(this)->*changed)();
        }
    }

    /// Closes the dialog, then calls the action if there is one. Of the stored action a copy is called, so that it may
    /// put the next question into this dialog without destroying itself.
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
