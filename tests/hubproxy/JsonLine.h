// Reads one JSON line of the hub simulator into a property tree; an empty tree when it is no JSON.
#pragma once

#include <sstream>
#include <string>

#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

inline boost::property_tree::ptree ParseJsonLine(const std::string& line) {
    boost::property_tree::ptree tree;
    std::istringstream input(line);
    try {
        boost::property_tree::read_json(input, tree);
    } catch (const boost::property_tree::json_parser_error&) {
        tree.clear();
    }
    return tree;
}
