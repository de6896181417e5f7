#include "captions/UnavailableSource.h"

UnavailableSource::UnavailableSource(QString problem)
    : problem_(std::move(problem))
{
}
