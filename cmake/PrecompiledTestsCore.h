#pragma once
#include "PrecompiledCore.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
