"""Builds and runs the consumer of the source tree against the package: run by conan create."""

import os

from conan import ConanFile
from conan.tools.build import can_run
from conan.tools.cmake import CMake, cmake_layout


class LumoTest(ConanFile):
    settings = "os", "compiler", "build_type", "arch"
    generators = "CMakeDeps", "CMakeToolchain"

    def requirements(self):
        self.requires(self.tested_reference_str)

    def layout(self):
        cmake_layout(self)

    def build(self):
        consumer = os.path.join(self.recipe_folder, "..", "..", "..", "tests", "consumer")
        cmake = CMake(self)
        cmake.configure(build_script_folder=consumer)
        cmake.build()

    def test(self):
        if can_run(self):
            self.run(os.path.join(self.cpp.build.bindir, "consumer"), env="conanrun")
