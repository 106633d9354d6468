#include "file_contents.h"
