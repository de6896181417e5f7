#include "platform/SpeechRecognizer.h"

SpeechRecognizer::~SpeechRecognizer() = default;
