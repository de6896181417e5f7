#include "platform/FileRecognizer.h"

FileRecognizer::~FileRecognizer() = default;
