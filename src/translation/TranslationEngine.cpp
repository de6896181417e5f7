#include "translation/TranslationEngine.h"

TranslationEngine::~TranslationEngine() = default;
