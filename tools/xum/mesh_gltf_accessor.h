#pragma once

#include <string>
#include <vector>

namespace tinygltf {
class Model;
}

/// All components of an accessor in order, which has to be of that type (TINYGLTF_TYPE_SCALAR for indexes, _VEC2 and
/// the like for others). `user` begins the message of the ModelProblem that says what is wrong with it.
std::vector<double> readAccessor(const tinygltf::Model& model, int number, int type, const std::string& user);
