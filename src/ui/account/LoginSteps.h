#pragma once

// The steps of the sign-in window and what each shows: the counter, the title, the subtitle, the
// main button's word and the links under the form. Which fields and pictures a step has is the
// window's business; the words live here, in one table. Pure; callable from any thread.

#include <QString>
#include <QStringList>

#include <optional>

namespace LoginSteps {

enum class Step { login, email, code, password, avatar, done };
// Creating an account, or setting a new password for one that exists.
enum class Flow { signUp, reset };

struct Words
{
    std::optional<int> counter;  // which step of total(); none where the counter is hidden
    QString title;
    QString subtitle;
    QString button;
    QStringList links;
};

// 4 for signUp (email, code, password, avatar), 3 for reset (no avatar).
int total(Flow flow);
// `email` is the address of the flow, named on the code and done steps.
Words words(Step step, Flow flow, const QString &email);
// The counter's text: "第 n 步，共 total 步".
QString counterText(int step, int total);

} // namespace LoginSteps
