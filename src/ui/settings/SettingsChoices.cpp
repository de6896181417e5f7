#include "ui/settings/SettingsChoices.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace SettingsChoices {

const QList<Choice> &layouts()
{
    static const QList<Choice> rows{{u"vertical"_s, u"上下"_s}, {u"horizontal"_s, u"左右"_s}};
    return rows;
}

const QList<Choice> &sources()
{
    static const QList<Choice> rows{{u"mic"_s, u"麦克风"_s}, {u"window"_s, u"其他翻译软件的字幕窗口"_s}};
    return rows;
}

const QList<Choice> &recognizers()
{
    static const QList<Choice> rows{{u"local"_s, u"本机（免费，不联网）"_s}, {u"cloud"_s, u"云端高精度（OpenAI）"_s}};
    return rows;
}

const QList<Choice> &cloudModels()
{
    static const QList<Choice> rows{{u"gpt-4o-mini-transcribe"_s, u"标准"_s},
                                    {u"gpt-4o-transcribe"_s, u"高精度（耗额度更多）"_s}};
    return rows;
}

const QList<Choice> &themes()
{
    static const QList<Choice> rows{{u"system"_s, u"跟随系统"_s}, {u"light"_s, u"浅色"_s}, {u"dark"_s, u"深色"_s}};
    return rows;
}

const QList<Choice> &qualities()
{
    static const QList<Choice> rows{{u"standard"_s, u"标准（约 30 MB/小时）"_s}, {u"small"_s, u"省空间（约 15 MB/小时）"_s}};
    return rows;
}

const QList<Choice> &overflows()
{
    static const QList<Choice> rows{{u"trimAudio"_s, u"清理最早的录音，保留文字和笔记"_s},
                                    {u"cloud"_s, u"存到云端（即将推出）"_s}};
    return rows;
}

const QList<Choice> &builtins()
{
    static const QList<Choice> rows{{u"claude"_s, u"Claude（推荐）"_s}, {u"openai"_s, u"ChatGPT"_s}};
    return rows;
}

const QList<Size> &limits()
{
    static const QList<Size> rows{{1, u"1 GB"_s}, {2, u"2 GB"_s}, {5, u"5 GB"_s}, {10, u"10 GB"_s}, {20, u"20 GB"_s}};
    return rows;
}

const QList<Size> &panelSizes()
{
    static const QList<Size> rows{{13, u"小"_s}, {15, u"标准"_s}, {18, u"大"_s}, {21, u"特大"_s}, {25, u"超大"_s}};
    return rows;
}

const QList<Size> &barSizes()
{
    static const QList<Size> rows{{16, u"小"_s}, {20, u"标准"_s}, {24, u"大"_s}, {30, u"特大"_s}, {38, u"超大"_s}};
    return rows;
}

qsizetype nearest(const QList<Size> &sizes, double value)
{
    qsizetype best = 0;
    for (qsizetype i = 1; i < sizes.size(); ++i) {
        if (std::abs(sizes[i].value - value) < std::abs(sizes[best].value - value))
            best = i;
    }
    return best;
}

} // namespace SettingsChoices
