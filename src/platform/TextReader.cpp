#include "platform/TextReader.h"

TextReader::~TextReader() = default;
