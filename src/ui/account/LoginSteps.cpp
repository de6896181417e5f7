#include "ui/account/LoginSteps.h"

using namespace Qt::StringLiterals;

namespace LoginSteps {

int total(Flow flow)
{
    return flow == Flow::reset ? 3 : 4;
}

Words words(Step step, Flow flow, const QString &email)
{
    const bool signUp = flow == Flow::signUp;
    switch (step) {
    case Step::login:
        return {std::nullopt, u"欢迎使用 Quillet"_s, u"用邮箱和密码登录"_s, u"登录"_s, {u"创建新账号"_s, u"忘记密码？"_s}};
    case Step::email:
        return {1, signUp ? u"输入你的邮箱"_s : u"找回密码"_s,
                signUp ? u"邮箱就是你的 Quillet 账号，我们会发一个验证码过去。"_s
                       : u"输入注册时用的邮箱，我们会发一个验证码过去。"_s,
                u"下一步"_s, {}};
    case Step::code:
        return {2, u"验证邮箱"_s, u"验证码已发到 " + email + u"\n10 分钟内有效，没收到请看看垃圾邮件。", u"下一步"_s,
                {u"重新发送验证码"_s}};
    case Step::password:
        return {3, signUp ? u"设置密码"_s : u"设置新密码"_s, u"以后用邮箱和这个密码登录。至少 8 位。"_s,
                signUp ? u"下一步"_s : u"完成"_s, {}};
    case Step::avatar:
        return {4, u"选择你的小猫"_s, u"挑一只喜欢的小猫，以后在账户里随时可以换。"_s, u"完成注册"_s, {}};
    case Step::done:
        return {std::nullopt, u"注册完成！"_s, u"欢迎加入 Quillet，" + email + u"\n准备好上课了吗？", u"开始使用"_s, {}};
    }
    return {};
}

QString counterText(int step, int total)
{
    return u"第 " + QString::number(step) + u" 步，共 " + QString::number(total) + u" 步";
}

} // namespace LoginSteps
