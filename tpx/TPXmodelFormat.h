// The 3D model format (.3rd) as the grammar engine reads it: the token definitions and the TRD
// grammar, each one constant text, with the codes of the tokens the actions tell apart and the
// numbers of the actions. Every keyword has exactly two spellings, all capitals or all small
// letters; the capital spelling of shininess is "SHNININESS".
#pragma once

namespace vellum {

// Codes of the link keywords, which the link action tells apart.
inline constexpr int kModelChildToken = 11;
inline constexpr int kModelSiblingToken = 12;
inline constexpr int kModelStringToken = 9;

// The tokens, in the order the scanner tries them: the keywords before $IDENTIFIER, so that
// they are not read as names (a name that begins with a keyword is split after it). Comments
// start with "*". Code 6 is unused.
inline constexpr char kModelTokens[] = R"TOKENS(
$COMMENT : 0 = "*" {"$CHAR$"}.
$LVERSION : 1 = "3rd v1".
$LVERTICES : 2 = "VERTICES" | "vertices".
$LFACES : 3 = "FACES" | "faces".
$LTEXTURE : 4 = "TEXTURE" | "texture".
$LNORMAL : 5 = "NORMAL" | "normal".
$NUMBER : 7 = ["\-"] DIGITS09 {DIGITS09} ["." DIGITS09 {DIGITS09}].
$LCHILD : 11 = "CHILD" | "child".
$LSIBLING : 12 = "SIBLING" | "sibling".
$LCOLOR : 13 = "COLOR" | "color".
$LPOSITION : 14 = "POSITION" | "position".
$LORIENTATION : 15 = "ORIENTATION" | "orientation".
$LPIVOT : 16 = "PIVOT" | "pivot".
$LSCALE : 17 = "SCALE" | "scale".
$LCW : 18 = "CW" | "cw".
$LMATERIAL : 19 = "MATERIAL" | "material".
$LAMBIENT : 20 = "AMBIENT" | "ambient".
$LDIFFUSE : 21 = "DIFFUSE" | "diffuse".
$LSPECULAR : 22 = "SPECULAR" | "specular".
$LEMISSION : 23 = "EMISSION" | "emission".
$LSHININESS : 24 = "SHNININESS" | "shininess".
$IDENTIFIER : 8 = CHARS.
$STRING : 9 = "\"" {(INTERNAL | "#"")} "\"".
$INTERNAL : 10 = "\\" "$CHAR$".
CHARS = LETTER {LETTER | DIGITS09 | "_"}.
DIGITS09 = "0-9".
DIGITS19 = "1-9".
LETTER = "a-z" | "A-Z".
.)TOKENS";

// Start symbol TRD; the numbers in angle brackets are the TPXmodelAction values.
inline constexpr char kModelGrammar[] = R"GRAMMAR(
TRD = $LVERSION [{MTDEF}] OBJECT {OBJECT}.
OBJECT = $IDENTIFIER <1> [($LCHILD |$LSIBLING) $IDENTIFIER <2>] "{" PLACE VERTICES FACES <12>"}".
PLACE = [$LPOSITION POINT <13>] [$LORIENTATION POINT <14>] [$LSCALE POINT <16>] [$LPIVOT POINT <15>].
VERTICES = $LVERTICES $NUMBER <3> {VERTEX}.
VERTEX = POINT <4> [$LNORMAL POINT <5>] <6>.
FACES = $LFACES $NUMBER <7> {FACE}.
FACE = $NUMBER <8> {$NUMBER <9>} [$LCW <17>] MATERIAL.
POINT = $NUMBER $NUMBER $NUMBER.
MATERIAL = ($LCOLOR RGB <10>) | ($LTEXTURE $STRING <11>) | ($LMATERIAL $IDENTIFIER <28>).
MTDEF = $LMATERIAL $IDENTIFIER <25> "{" (MTSIMPLE | MTTEXTURE) "}" <26>.
MTSIMPLE = COLOR | (AMBIENT DIFFUSE SPECULAR EMISSION SHININESS <23>).
COLOR = $LCOLOR RGB <18>.
AMBIENT = $LAMBIENT RGB <19>.
DIFFUSE = $LDIFFUSE RGB <20>.
SPECULAR = $LSPECULAR RGB <21>.
EMISSION = $LEMISSION RGB <22>.
SHININESS = $LSHININESS $NUMBER <27>.
MTTEXTURE = $LTEXTURE $STRING <24>.
RGB = $NUMBER $NUMBER $NUMBER.
#TRD.
)GRAMMAR";

enum class TPXmodelAction : int {
    ObjectStart = 1,
    Link = 2,
    VertexCount = 3,
    VertexPosition = 4,
    VertexNormal = 5,
    VertexDone = 6,
    FaceCount = 7,
    FaceStart = 8,
    Corner = 9,
    FaceColour = 10,
    FaceTexture = 11,
    ObjectEnd = 12,
    Position = 13,
    Orientation = 14,
    Pivot = 15,
    Scale = 16,
    Clockwise = 17,
    MaterialColour = 18,
    Ambient = 19,
    Diffuse = 20,
    Specular = 21,
    Emission = 22,
    FullMaterial = 23,
    TextureMaterial = 24,
    MaterialStart = 25,
    MaterialEnd = 26,
    Shininess = 27,
    NamedMaterial = 28,
};

}  // namespace vellum
