// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"
#include "platform/RandomSource.h"

#include <atomic>
#include <memory>

namespace quillhaven {

/// The credential store of this session: the desktop's keyring when one answers, else the embedded store. Chosen at the
/// first call and never changed afterwards, so that a secret is always looked for where it was put; the log says which.
class SystemCredentialStore : public CredentialStore
{
public:
    /// `directory` is the program's configuration folder. `random` must outlive this object.
    SystemCredentialStore(const QString &directory, RandomSource &random);
    ~SystemCredentialStore() override;

    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account,
                                       const QByteArray &value) override;
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override;
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override;
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override;
    /// The chosen store's name; "not chosen yet" before the first call. Any thread may ask.
    [[nodiscard]] QString displayName() const override;

private:
    [[nodiscard]] CredentialStore &chosen();

    QString m_directory;
    RandomSource &m_random;
    std::unique_ptr<CredentialStore> m_owned;
    std::atomic<CredentialStore *> m_chosen = nullptr; ///< set once, on the queue; read by the window
};

} // namespace quillhaven
