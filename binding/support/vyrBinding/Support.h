/// Everything that generated wrappers call: one include for them.
#pragma once

#include <vyrBinding/Guards.h>
#include <vyrBinding/Numbers.h>
#include <vyrBinding/Ownership.h>
#include <vyrBinding/Stack.h>
#include <vyrBinding/Values.h>
#include <vyrBinding/Views.h>

#include <string>

/// Marks the two open functions of a module; everything else in a generated file is local to it.
#define VYR_BINDING_EXPORT __attribute__((visibility("default")))
