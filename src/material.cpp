// Anchor translation unit of the material layer: the layer's classes live in
// src/kit/ and src/data/.
