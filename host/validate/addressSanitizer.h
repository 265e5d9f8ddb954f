// addressSanitizer.h: ORV_ADDRESS_SANITIZER, 1 in a program with the address sanitizer, else 0.
// Compilers tell it in two ways.
#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORV_ADDRESS_SANITIZER 1
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define ORV_ADDRESS_SANITIZER 1
#endif
#ifndef ORV_ADDRESS_SANITIZER
#define ORV_ADDRESS_SANITIZER 0
#endif
