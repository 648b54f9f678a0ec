#pragma once
// The only place that knows about platforms and symbol visibility.
//
// LUMO_API               on every exported function and non-template class
// LUMO_TEMPLATE_API      on every exported function template and class template
// LUMO_TYPE              on every value type that an exported template takes as argument: an instance of a
//                        template is never more visible than its arguments
// LUMO_EXTERN            prefix of an explicit instantiation declaration of a function in a public header
// LUMO_INSTANTIATE       prefix of the one explicit instantiation definition of a function in a source file,
//                        also of a class's member that is defined in another file than the rest of its class
// LUMO_EXTERN_CLASS      LUMO_EXTERN for a whole class template, given as an argument
// LUMO_INSTANTIATE_CLASS LUMO_INSTANTIATE for a whole class template
//
// A public header lists the instances of its templates once, as a macro over the prefix and the point type
// (for example LUMO_PATH_ARRAY): the header applies it with LUMO_EXTERN, the source that defines the bodies
// with LUMO_INSTANTIATE, so that the two cannot drift apart.

#define LUMO_VERSION_MAJOR 0
#define LUMO_VERSION_MINOR 1
#define LUMO_VERSION_PATCH 0
/// The version of the headers as one number, 10000 * major + 100 * minor + patch.
#define LUMO_VERSION (LUMO_VERSION_MAJOR * 10000 + LUMO_VERSION_MINOR * 100 + LUMO_VERSION_PATCH)

#if defined(_WIN32)
// For functions the mark belongs on the instantiation; for a class GCC heeds only its first instantiation,
// which is the declaration in the header.
#if defined(LUMO_BUILDING_LIBRARY)
#define LUMO_API __declspec(dllexport)
#define LUMO_INSTANTIATE template __declspec(dllexport)
#define LUMO_EXTERN_CLASS(...) extern template class __declspec(dllexport) __VA_ARGS__
#else
#define LUMO_API __declspec(dllimport)
#define LUMO_INSTANTIATE template
// A DLL never exports inline members, so that a host that is built without optimisation must make its own.
#define LUMO_EXTERN_CLASS(...) static_assert(true)
#endif
#define LUMO_TEMPLATE_API
#define LUMO_TYPE
#else
#define LUMO_API __attribute__((visibility("default")))
#define LUMO_INSTANTIATE template
#define LUMO_EXTERN_CLASS(...) extern template class __VA_ARGS__
#define LUMO_TEMPLATE_API __attribute__((visibility("default")))
#define LUMO_TYPE __attribute__((visibility("default")))
#endif
#define LUMO_EXTERN extern template
#define LUMO_INSTANTIATE_CLASS template class

namespace Lumo {
/// The version of the library that is loaded, in the form of LUMO_VERSION: a host compares the two to learn
/// whether it runs with the library that it was compiled for.
LUMO_API int Version() noexcept;
}  // namespace Lumo
