#include "file_source.h"

size_t qHash(const FileSource &source, size_t seed)
{
    return qHashMulti(seed, static_cast<int>(source.kind()), source.url());
}
