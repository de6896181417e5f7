// quillet-model-check <acoustic folder> <dictionary> <language model>: loads the model the way
// the recogniser does and exits 0 when it loads. PocketSphinx ends the process on some damaged
// files, so Quillet asks this program first rather than risk its own process.

#include "platform/PocketSphinxModel.h"

#include <QStringList>

#include <pocketsphinx.h>

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const auto model = PocketSphinxModel::fromArguments(arguments);
    if (!model)
        return 2;
    ps_decoder_t *decoder = model->open();
    if (!decoder)
        return 1;
    ps_free(decoder);
    return 0;
}
