// MAT files: the materials of one object and the polygons that they claim.
#pragma once

#include "model/rsd.hpp"
#include "utilkit/fopen.hpp"

#include <cstdint>

namespace vexbind {

/// The listing pass: settles the MAT name and takes the version and the material count into the object.
/// Returns 1. A file that does not open is raised as OPEN_ERR at matNotFound.
std::int32_t read_mat_info(RSD* object);

/// The reading pass, right after read_ply: fills `material` from element 1 and the polygons' attributes.
/// `name` is opened in the working directory; failure is raised as OPEN_ERR at openFailed.
void read_mat(const char* name, RSD* object);

/// Reads the count line into the object; SYN_ERR at matCountSyntax.
void get_mat_length(FileRecord* file, RSD* object);

/// Reads all description lines; SYN_ERR at matLineSyntax and at the status of the kind.
void get_material_desc(FileRecord* file, RSD* object);

/// Assigns material `mat_no` to every polygon of `list` ("0-3,8"). An item that is no number is raised
/// as MATLIST_ERR at badPolygonList.
void get_material_item(const char* list, std::int32_t mat_no);

/// Assigns material `mat_no` to polygon `poly_no`, with the attributes that follow from it.
void set_mat_no(std::int32_t poly_no, std::int32_t mat_no);

/// Releases the parameters of materials 1 to the object's count; the default material keeps its own.
void free_materials(const RSD* object);

} // namespace vexbind
