#pragma once

// The client of the account service on the relay: sign-up and sign-in by mail code or password,
// the session, the profile. No instances: the session token lives in the keychain under
// "quillet-session", the address in the user default "account.email". Every operation that can
// fail for the user gives a ready Chinese sentence, or none on success; the windows show it.
//
// Network operations run as tasks on Http::taskPool(); call them on the thread of `context` (the
// main thread), where `done` then runs, unless context is gone by then. They return the task's
// future. The reads (token, email, signedIn, lastHadPassword) and message() are callable from
// any thread. No request is retried.

#include <QFuture>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace Account {

using Outcome = std::optional<QString>;  // none on success, else the sentence for the user
using Done = std::function<void(const Outcome &)>;

std::optional<QString> token();
std::optional<QString> email();
bool signedIn();
// Whether the last successful sign-in said the account has a password.
bool lastHadPassword();
// How this computer is named to the service: "Linux · " and the distribution's pretty name.
QString device();
// The user's sentence for a failed request: the service's error word decides, whatever the status;
// status 0 means no answer.
QString message(int status, const QJsonObject &json);

// True only when a relay is configured and its /health says both accounts and mail are on.
QFuture<bool> available(QObject *context, std::function<void(bool)> done);
QFuture<Outcome> sendCode(const QString &to, QObject *context, Done done);
QFuture<Outcome> verify(const QString &email, const QString &code, QObject *context, Done done);
QFuture<Outcome> login(const QString &email, const QString &password, QObject *context, Done done);
// Asks the service (none without a session, with no request) and takes over its avatar.
QFuture<std::optional<bool>> hasPassword(QObject *context, std::function<void(std::optional<bool>)> done);
// Shows at once here; the service is told in the background and a failure isn't reported.
void setAvatar(int index);
// `current` is empty for an account without a password.
QFuture<Outcome> setPassword(const QString &password, const QString &current, QObject *context, Done done);
QFuture<Outcome> changeEmail(const QString &to, const QString &password, QObject *context, Done done);
QFuture<Outcome> confirmEmail(const QString &email, const QString &code, QObject *context, Done done);
// Ends the session here at once; the service is told in the background without waiting.
void signOut();

} // namespace Account
