#pragma once
#include "high/b.h"
