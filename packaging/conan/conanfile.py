"""Builds the source tree that this recipe stands in: conan create packaging/conan (Conan 2)."""

import os

from conan import ConanFile
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class LumoRecipe(ConanFile):
    name = "lumo"
    version = "0.1.0"
    license = "MIT"
    description = "A curve engine for paths of lines and cubic Beziers"
    topics = ("bezier", "curves", "offset", "boolean", "geometry", "svg")
    package_type = "shared-library"
    settings = "os", "compiler", "build_type", "arch"

    def export_sources(self):
        tree = os.path.join(self.recipe_folder, "..", "..")
        for pattern in ("CMakeLists.txt", "LICENSE", "README.md", "CHANGELOG.md", "cmake/*", "include/*", "src/*",
                        "tools/debugger/*"):
            copy(self, pattern, src=tree, dst=self.export_sources_folder)

    def validate(self):
        check_min_cppstd(self, 20)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        for part in ("TESTS", "TOOLS", "EXAMPLES"):
            toolchain.cache_variables["LUMO_BUILD_" + part] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        copy(self, "LICENSE", src=self.source_folder, dst=os.path.join(self.package_folder, "licenses"))
        CMake(self).install()

    def package_info(self):
        self.cpp_info.libs = ["lumo"]
        self.cpp_info.set_property("cmake_file_name", "Lumo")
        self.cpp_info.set_property("cmake_target_name", "Lumo::lumo")
        self.cpp_info.set_property("pkg_config_name", "lumo")
